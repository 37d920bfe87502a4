#pragma once

#include <QtGlobal>

#include "engine/transfer/transfer.h"

namespace engine {

struct ResumePlan;

/// Several workers for one download.

/// After the head of a whole answer to the only worker: splits the file if host, server and size
/// allow it, over `connections` at most.
void accelerateIfPossible(Transfer& transfer, const Transfer::Worker::Pointer& primary,
                          const WorkerResponse& response, qint64 connections);

/// Adds a worker for each part of the plan, behind the first one, which has been added and takes
/// what stands before them. Those beyond `connections` wait until another has ended. False: one
/// could not be started, and all are gone.
[[nodiscard]] bool addResumedWorkers(Transfer& transfer, const ResumePlan& plan,
                                     qint64 connections);

/// The first worker has come to where the second one began: stops it there.
void truncateFirstWorker(Transfer& transfer, qint64 offset);

/// A worker could not begin with its part: it was answered with an error, or its connection failed.
/// It waits until another worker has ended, since servers commonly serve only so many connections.
/// False: no other worker is running.
[[nodiscard]] bool parkRefusedWorker(Transfer& transfer, Transfer::Worker& worker);
/// Whether another worker than this one is running.
[[nodiscard]] bool hasOthersRunning(const Transfer& transfer, const Transfer::Worker& worker);
/// Starts a worker that waits, now that another one has ended. False: it could not be started.
[[nodiscard]] bool startParkedWorker(Transfer& transfer);

/// From `offset` in it on, the part becomes one of its own with a new connection. Only for parts
/// that lie in place, and not where bytes have come already. False: it could not be done, and
/// nothing has changed.
[[nodiscard]] bool splitPart(Transfer& transfer, std::size_t part, qint64 offset);
/// Gives up the connection of a part for a new one, which goes on from what has come.
void replaceWorker(Transfer& transfer, const Transfer::Worker& worker);

/// The server does not serve parts after all, or other ones: the first worker goes on alone.
void dropAcceleration(Transfer& transfer);

}  // namespace engine
