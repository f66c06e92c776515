#pragma once

#include "Toolkit/Countries.h"

/// What the pages were told, in order: "root load, root appear, ".
inline QString calls;

/// A page of a stack, with a button, a table and a field below each other.
class Page : public Screen {
public:
    explicit Page(const QString &name)
    {
        setObjectName(name);
        setTitle(name);
    }

    Button *button = nullptr;
    TableView *table = nullptr;
    TextField *field = nullptr;

protected:
    void viewDidLoad() override
    {
        calls += objectName() + u" load, "_s;
        button = new Button(Button::Kind::filled, {}, this);
        button->setGeometry(100, 20, 100, 50);
        table = new TableView(this);
        table->setGeometry(0, 200, 390, 400);
        table->registerCell(u"Cell"_s, [] { return new CountryTableCell; });
        table->setDataSource(&m_rows);
        field = new TextField(this);
        navigationItem().setRightBarButtonItem(new BarButtonItem(u"Help"_s, u"btnHelp"_s)); // stays
    }
    void viewWillAppear(bool) override
    {
        calls += objectName() + u" appear, "_s;
        auto *const back = new BarButtonItem(u"Back"_s, u"btnBack"_s);
        connect(back, &QAbstractButton::clicked, this, [this] {
            if (navigationController())
                navigationController()->popViewController(true);
        });
        navigationItem().setLeftBarButtonItem(back);
    }
    void viewWillDisappear(bool) override
    {
        calls += objectName() + u" disappear, "_s;
        navigationItem().setLeftBarButtonItem(nullptr);
    }

private:
    Countries m_rows;
};

/// A stack with its first page, not shown yet.
class Stack : public testing::Test {
protected:
    void begin(bool moves)
    {
        calls.clear();
        QApplication::setStyle(new ParloquinTest::PacedStyle(moves ? 200 : 0));
        root = new Page(u"root"_s);
        controller = std::make_unique<NavigationController>(root);
        controller->resize(390, 800);
    }
    Page *push(const QString &name, bool animated = true) const
    {
        auto *const page = new Page(name);
        controller->pushViewController(page, animated);
        return page;
    }
    void pop() const { controller->popViewController(true); }
    [[nodiscard]] bool rests() const
    {
        return QTest::qWaitFor([this] { return controller->isAtRest(); });
    }
    [[nodiscard]] int depth() const
    {
        return static_cast<int>(controller->viewControllers().size());
    }

    Page *root = nullptr;
    std::unique_ptr<NavigationController> controller;
};
