#pragma once

namespace http {

class ConnectionLease;
class FileOutput;
class ProgressReporter;
class RequestBody;
class RequestHeaderBuilder;
class RequestNotifier;
class SharedState;
class TransferStream;
struct RequestState;

/// The parts that one request is made of, as the steps of its run see them.
struct RequestParts {
    RequestState& state;
    SharedState& shared;
    RequestNotifier& notifier;
    RequestBody& body;
    RequestHeaderBuilder& headers;
    ProgressReporter& progress;
    FileOutput& file;
    ConnectionLease& connection;
    TransferStream& stream;
};

}  // namespace http
