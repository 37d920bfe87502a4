#include "diagnostics/json_log_stream.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <algorithm>

#include "diagnostics/child_output.h"

using namespace Qt::Literals::StringLiterals;

namespace diagnostics {

bool JSONLogCutter::append(QByteArrayView bytes) {
    constexpr QByteArrayView endOfEntry = "\n}";
    // What was there before holds no end, or it could not be parsed and may be with what came.
    _dataStore.append(bytes);
    qsizetype last = _dataStore.lastIndexOf(endOfEntry);
    if (last < 0)
        return true;
    if (_removeHeader)
        removeHeader(last);
    const qsizetype first = _dataStore.indexOf('{');
    if (first < 0 || first > last)
        return true;
    const qsizetype end = last + endOfEntry.size();
    auto entries = parsed(QByteArrayView(_dataStore).sliced(first, end - first));
    if (!entries)
        return true;
    _dataStore.remove(0, end);
    return _outputHandler(std::move(*entries));
}

void JSONLogCutter::removeHeader(qsizetype& last) {
    const qsizetype start = _dataStore.indexOf("\n[{");
    if (start >= 0 && start < last) {
        _dataStore.remove(0, start);
        last -= start;
    }
    _removeHeader = false;
}

std::optional<LogEntries> JSONLogCutter::parsed(QByteArrayView batch) {
    LogEntries entries;
    structured::FlatObject object;
    while (!batch.isEmpty()) {
        const qsizetype size = object.read(batch);
        if (size == 0)
            return std::nullopt;
        entries.push_back(_maker.entry(object));
        batch = batch.sliced(size);
        batch = batch.sliced(structured::jsonBlanks(batch));
        if (batch.isEmpty())
            break;
        if (batch.front() != ',')
            return std::nullopt;
        batch = batch.sliced(1);
    }
    return entries;
}

ILRJSONLogStream::ILRJSONLogStream(const QStringList& arguments, LogEntryHandler outputHandler,
                                   bool waitUntilExit)
    : _cutter(std::move(outputHandler)),
      _task(ChildOutput::start(toolPath(), arguments, [this, waitUntilExit](QByteArrayView bytes) {
          return _cutter.append(bytes) || !waitUntilExit;
      })) {
    if (waitUntilExit && _task)
        _task->wait();
}

ILRJSONLogStream::~ILRJSONLogStream() = default;

void ILRJSONLogStream::waitForStreamWithArguments(const QStringList& arguments,
                                                  const LogEntryHandler& outputHandler) {
    ILRJSONLogStream stream(arguments, outputHandler, true);
    stream.terminate();
}

void ILRJSONLogStream::terminate() {
    if (_task)
        _task->terminate();
}

bool ILRJSONLogStream::isRunning() const {
    return _task && _task->isRunning();
}

QString ILRJSONLogStream::toolPath() {
    const QString name = u"orlop-log"_s;
    const QString program = QFile::symLinkTarget(u"/proc/self/exe"_s);
    const QString beside = program.first(program.lastIndexOf(u'/') + 1) + name;
    return QFileInfo(beside).isExecutable() ? beside : QStandardPaths::findExecutable(name);
}

}  // namespace diagnostics
