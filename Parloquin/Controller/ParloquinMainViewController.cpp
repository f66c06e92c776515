#include "Parloquin/Controller/ParloquinMainViewController.h"

#include "Parloquin/Cell/ThirdPartyKitTableCell.h"
#include "Parloquin/Controller/OtpMainViewController.h"
#include "Parloquin/Extension/ClassName.h"
#include "Parloquin/Manager/HudManager.h"
#include "Parloquin/Networking/Model/Response/InitResponseModel.h"
#include "Parloquin/Toolkit/Label.h"
#include "Parloquin/Toolkit/NavigationController.h"
#include "Parloquin/Toolkit/TappableView.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QGuiApplication>

namespace parloquin {

ParloquinMainViewController::ParloquinMainViewController(QWidget *parent)
    : BaseViewController(parent)
{
}

ParloquinMainViewController::~ParloquinMainViewController() = default;

void ParloquinMainViewController::setLocalization()
{
    setTitle(QCoreApplication::translate("Parloquin", "Parloquin"));
}

void ParloquinMainViewController::setBinding()
{
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
        [this](Qt::ApplicationState state) {
            if (state == Qt::ApplicationActive)
                appDidBecomeActive();
        });
    connect(&requiredViewModel().listState, &ListState::settled, this, [this] { showEmptyLook(); });
    showEmptyLook();
    HudManager::shared().show(weakReference());
    // Loading is part of the container's show event: a host that deletes the container over a
    // missing network must not do so inside of it.
    afterEvent([this] { requiredViewModel().requestInit(); });
}

void ParloquinMainViewController::viewWillAppear(bool animated)
{
    BaseViewController::viewWillAppear(animated);
    setCloseButton();
}

void ParloquinMainViewController::viewWillDisappear(bool animated)
{
    BaseViewController::viewWillDisappear(animated);
    navigationItem().setRightBarButtonItem(nullptr);
}

void ParloquinMainViewController::appDidBecomeActive()
{
    requiredViewModel().checkStatusAfterThirdPartyApp();
}

void ParloquinMainViewController::rebindData()
{
    onMain([this, screen = weakReference()] {
        if (screen.expired())
            return;
        const auto &answer = requiredViewModel().initResponse;
        lblDescription->setText(answer ? answer->description.value_or(QString()) : QString());
        tblKits->reloadData();
        bindAlternate();
        HudManager::shared().hide(screen);
    });
}

void ParloquinMainViewController::bindAlternate()
{
    const auto &answer = requiredViewModel().initResponse;
    if (!answer || !answer->alternativeValidation)
        return;
    lblAlternateKitDesc->setText(answer->alternativeValidationDescription.value_or(QString()));
    viewAlternativeKit->setAccessibleName(
        lblAlternateKitTitle->text() + QLatin1Char(' ') + lblAlternateKitDesc->text());
    viewAlternativeKit->show();
}

int ParloquinMainViewController::numberOfRows(const TableView &, int) const
{
    return static_cast<int>(requiredViewModel().kits.size());
}

const ThirdPartyKitModel &ParloquinMainViewController::kitAt(const IndexPath &path) const
{
    const auto &kits = requiredViewModel().kits;
    if (path.row < 0 || path.row >= kits.size())
        fatal(QStringLiteral("app list: no app at row %1; reload the table with its rows")
                  .arg(path.row));
    return kits.at(path.row);
}

// An app without a text shows none; a reader would have nothing to say.
QString ParloquinMainViewController::nameOfRow(const TableView &, const IndexPath &path) const
{
    const ThirdPartyKitModel &kit = kitAt(path);
    return kit.text.value_or(kit.name.value_or(QString()));
}

TableCell *ParloquinMainViewController::cellForRow(TableView &table, const IndexPath &path)
{
    auto *const cell = qobject_cast<ThirdPartyKitTableCell *>(
        table.dequeueReusableCell(nameOfClass<ThirdPartyKitTableCell>()));
    cell->configure(kitAt(path));
    return cell;
}

void ParloquinMainViewController::didSelectRow(TableView &, const IndexPath &path)
{
    afterEvent([this, kit = kitAt(path)] { requiredViewModel().start(kit); });
}

void ParloquinMainViewController::actionTapCloseButton()
{
    if (NavigationController *const navigation = navigationController())
        navigation->dismiss();
}

void ParloquinMainViewController::actionTapGoToOTP()
{
    NavigationController *const navigation = navigationController();
    if (!navigation)
        return;
    navigation->pushViewController(new OtpMainViewController, true);
}

} // namespace parloquin
