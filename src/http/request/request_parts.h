#pragma once

namespace http {

class ConnectionLease;
class RequestBody;
class RequestExtras;
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
    RequestExtras& extras;
    ConnectionLease& connection;
    TransferStream& stream;
};

}  // namespace http
