#pragma once

#include "Parloquin/Controller/Base/BaseViewController.h"
#include "Parloquin/Protocol/Updateable.h"
#include "Parloquin/Toolkit/TableView.h"
#include "Parloquin/ViewModel/ParloquinViewModel.h"

#include <QtCore/QPointer>

namespace parloquin {

class BarButtonItem;
class Hairline;
class ImageView;
class Label;
class TappableView;

/// \brief The first screen: the messaging apps to verify by, and the way to the road by SMS.
///
/// Main thread only.
class ParloquinMainViewController : public BaseViewController<ParloquinViewModel>,
                                    public Updateable,
                                    private TableViewDataSource,
                                    private TableViewDelegate {
    Q_OBJECT
public:
    explicit ParloquinMainViewController(QWidget *parent = nullptr);
    ~ParloquinMainViewController() override;

    void rebindData() override;

protected:
    void setBinding() override;
    void setLocalization() override;
    void setUI() override;
    void viewWillAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    [[nodiscard]] int numberOfRows(const TableView &table, int section) const override;
    [[nodiscard]] QString nameOfRow(const TableView &table, const IndexPath &path) const override;
    [[nodiscard]] TableCell *cellForRow(TableView &table, const IndexPath &path) override;
    void didSelectRow(TableView &table, const IndexPath &path) override;
    [[nodiscard]] const ThirdPartyKitModel &kitAt(const IndexPath &path) const;

    void appDidBecomeActive();
    void actionTapCloseButton();
    void actionTapGoToOTP();
    void bindAlternate();

    // In ParloquinMainViewController+UI.cpp
    void setCloseButton();
    void setDescriptionLabel();
    void setKitsTable();
    void setAlternativePanel();
    void setTableBinding();
    void showEmptyLook();
    void setAnchorsForDescriptionLabel();
    void setAnchorsForKitsTable();
    void setAnchorsForAlternativePanel();

    QPointer<BarButtonItem> btnClose; // the bar's, and gone with it
    Label *lblDescription = nullptr;
    TableView *tblKits = nullptr;
    TappableView *viewAlternativeKit = nullptr;
    Hairline *lineAlternateViewTop = nullptr;
    Label *lblAlternateKitTitle = nullptr;
    Label *lblAlternateKitDesc = nullptr;
    ImageView *iconArrowRight = nullptr;
    ImageView *iconSms = nullptr;
};

} // namespace parloquin
