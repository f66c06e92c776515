#pragma once

#include <QtTest/QTest>

#include <gtest/gtest.h>

/// Waits up to five seconds for the condition, turning the event loop. (QTRY_VERIFY would fail
/// only under QTest's own runner.)
#define EXPECT_SOON(condition)                                                                     \
    EXPECT_TRUE(QTest::qWaitFor([&] { return (condition); })) << #condition
