#pragma once

#include <QByteArray>
#include <QString>
#include <cstdlib>

/// What one target tries with one input; each target has its own.
void checkInput(const QByteArray& input);

/// What must hold for every input; else the fuzzer has found something.
inline void require(bool condition) {
    if (!condition)
        std::abort();
}
