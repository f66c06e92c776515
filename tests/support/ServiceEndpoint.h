#pragma once

#include <QtCore/QString>

#include <chrono>

/// Points the kit at a server of the test; stands in for the address fixed at build time.
void setServiceHost(const QString &hostAndPort);
/// What the kit says it is built for; by default a real service, so that it hears no rehearsal.
void setBuiltFor(const QString &hostAndPort);
/// The 60 seconds of a call, shortened.
void setServiceTimeout(std::chrono::milliseconds timeout);
