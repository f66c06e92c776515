#pragma once

#include <QtCore/QByteArray>

/// \brief Whether this process has a network of its own, where it may do as it likes.
///
/// The first answer is no: by then the current case has run again in a process that has one, with
/// nothing but the loopback up and names asked at 127.0.0.1, and has failed here when it failed
/// there.
bool isInOwnNetwork();

/// Runs commands of the network tool, one a line.
bool ip(const QByteArray &lines);

// A pair of links is a cable: its other end taken down unplugs it. It gives itself no addresses,
// whose news would come in between.
constexpr char wired[] =
    "link add d0 type veth peer name d1\n"
    "link set d0 addrgenmode none\nlink set d1 addrgenmode none\nlink set d1 up\n"
    "addr add 10.9.0.2/24 dev d0\n"
    "link set d0 up\n";
constexpr char modem[] = "link add wwan0 type veth peer name w1\nlink set w1 up\n"
                         "addr add 10.8.0.2/24 dev wwan0\n"
                         "link set wwan0 up\n";
