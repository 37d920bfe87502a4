#include "app/details/connections.h"

#include <algorithm>

#include "engine/lifecycle/download.h"
#include "engine/record/known_file.h"

namespace app {

using Worker = engine::DQDownloadWorkerPrototype;

namespace {

Connection::State stateOf(const Worker& worker) {
    if (worker.isDone())
        return Connection::State::Done;
    return worker.isServed() || worker.downloadedBytes() > 0 ? Connection::State::Running
                                                             : Connection::State::Waiting;
}

}  // namespace

double Connection::fraction() const {
    const qint64 length = end - start + 1;
    return end < 0 || length < 1
               ? 0
               : std::min(static_cast<double>(arrived) / static_cast<double>(length), 1.0);
}

std::vector<Connection> ConnectionMeter::connections(const engine::DQDownload& download,
                                                     platform::Seconds now) {
    const qint64 length = engine::knownFile(download.userSettings()).length;
    std::unordered_map<const Worker*, Look> looks;
    std::vector<Connection> connections;
    for (const auto& worker : download.workers()) {
        Connection connection;
        connection.start = worker->fractionStartByte();
        connection.end = worker->endByte() > 0 ? worker->endByte() : length - 1;
        connection.arrived = worker->resumeByteOffset() + worker->downloadedBytes();
        connection.state = stateOf(*worker);
        const Look look = lookAt(*worker, connection.arrived, now);
        looks.emplace(worker.get(), look);
        if (connection.state == Connection::State::Running)
            connection.perSecond = static_cast<qint64>(look.perSecond);
        // The one before it is cut off here, though it has asked for all.
        if (!connections.empty())
            connections.back().end = connection.start - 1;
        connections.push_back(connection);
    }
    looks_ = std::move(looks);
    return connections;
}

/// Half of the speed is that of the time since the last look, so that it is steady to the eye.
ConnectionMeter::Look ConnectionMeter::lookAt(const Worker& worker, qint64 arrived,
                                              platform::Seconds now) const {
    constexpr platform::Seconds shortest = 0.2;
    const auto last = looks_.find(&worker);
    if (last == looks_.end() || arrived < last->second.arrived)
        return {now, arrived, 0};
    if (now - last->second.at < shortest)
        return last->second;
    const double rate =
        static_cast<double>(arrived - last->second.arrived) / (now - last->second.at);
    const double before = last->second.perSecond;
    return {now, arrived, before > 0 ? (rate + before) / 2 : rate};
}

}  // namespace app
