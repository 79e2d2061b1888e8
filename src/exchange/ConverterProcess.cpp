#include "exchange/ConverterProcess.h"

#include <QProcess>

namespace kirrel::exchange {

namespace {

QString firstLine(const QByteArray& text) {
    const QString s = QString::fromLocal8Bit(text).trimmed();
    return s.section('\n', 0, 0).trimmed();
}

} // namespace

ConverterResult runConverter(const ConverterCall& call) {
    QProcess proc;
    proc.setWorkingDirectory(call.workingDir);
    proc.setProcessEnvironment(call.environment);
    proc.setProgram(call.program);
    proc.setArguments(call.args);
    proc.setStandardInputFile(QProcess::nullDevice());
    proc.start();
    ConverterResult result;
    result.ok = proc.waitForStarted(-1);
    // A conversion that runs past the limit is taken to hang: it is ended and reported as failed, so
    // that the panel's wait always ends.
    if (result.ok && !proc.waitForFinished(call.limitSeconds * 1000)) {
        proc.kill();
        proc.waitForFinished(-1);
        result.ok = false;
        result.hung = true;
    }
    if (!result.hung) result.error = firstLine(proc.readAllStandardError());
    if (proc.exitStatus() != QProcess::NormalExit || proc.exitCode() != 0) result.ok = false;
    return result;
}

QString converterFailureMessage(const ConverterResult& result, int limitSeconds) {
    if (result.hung) {
        const QString limit = limitSeconds % 60 == 0 ? QString("%1 minutes").arg(limitSeconds / 60)
                                                     : QString("%1 seconds").arg(limitSeconds);
        return "The converter did not finish within " + limit + " and was stopped.";
    }
    return "The converter reported an error" + (result.error.isEmpty() ? QString(".") : ": " + result.error);
}

} // namespace kirrel::exchange
