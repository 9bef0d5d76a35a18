// Runs a program that tests need.
#pragma once

#include "tests/support/processlimit.h"

#include <QProcess>
#include <QString>
#include <QStringList>

/// The output of a program that has to succeed, and to be silent on standard error.
inline QString outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(ProcessLimit) || process.exitStatus() != QProcess::NormalExit
        || process.exitCode() != 0)
        return program + QStringLiteral(" failed");
    const QString errors = QString::fromUtf8(process.readAllStandardError());
    return errors.isEmpty() ? QString::fromUtf8(process.readAllStandardOutput()) : errors;
}
