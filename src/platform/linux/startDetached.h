#pragma once

#include <QStringList>

/// Starts a program that lives on without us, in the user's home and with the environment that this program
/// itself was started with, its output going nowhere; the user asked for it just now. `reason` begins the
/// line that a failure prints. Answers whether it was started.
bool startDetached(const QString &program, const QStringList &arguments, const QString &reason);
