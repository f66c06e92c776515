#pragma once

// What tests of widgets all use, and the short names that they use it by.
#include "Parloquin/Toolkit/BarButtonItem.h"
#include "Parloquin/Toolkit/Button.h"
#include "Parloquin/Toolkit/ImageView.h"
#include "Parloquin/Toolkit/Label.h"
#include "Parloquin/Toolkit/NavigationBar.h"
#include "Parloquin/Toolkit/NavigationController.h"
#include "Parloquin/Toolkit/Screen.h"
#include "Parloquin/Toolkit/TableView.h"
#include "Parloquin/Toolkit/TextField.h"
#include "Parloquin/Toolkit/View.h"
#include "TestKit/PacedStyle.h"
#include "support/ByName.h"
#include "support/Hands.h"
#include "support/Pictures.h"

#include <QtCore/QPointer>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLineEdit>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <tuple>
#include <vector>

using namespace parloquin;
using namespace Qt::StringLiterals;

// Wait up to five seconds for the condition, turning the event loop. (QTRY_VERIFY would fail only
// under QTest's own runner.)
#define EXPECT_SOON(...) EXPECT_TRUE(QTest::qWaitFor([&] { return (__VA_ARGS__); })) << #__VA_ARGS__
#define ASSERT_SOON(...) ASSERT_TRUE(QTest::qWaitFor([&] { return (__VA_ARGS__); })) << #__VA_ARGS__
