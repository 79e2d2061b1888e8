#pragma once
// One start of the converter by the batch runner: no shell, no standard input, a time limit after
// which the call is taken to hang, and the first line of what it wrote to its error channel.

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace kirrel::exchange {

struct ConverterCall {
    QString program;
    QStringList args;
    QString workingDir;
    QProcessEnvironment environment;
    int limitSeconds = 15 * 60;
};

struct ConverterResult {
    bool ok = true;
    bool hung = false;
    QString error; // the first line the converter wrote to its error channel
};

// Blocks until the converter ends or the limit is reached; safe to call from several threads at once.
ConverterResult runConverter(const ConverterCall& call);

// What the user is told about a failed call; the words name the limit as the user set it.
QString converterFailureMessage(const ConverterResult& result, int limitSeconds);

} // namespace kirrel::exchange
