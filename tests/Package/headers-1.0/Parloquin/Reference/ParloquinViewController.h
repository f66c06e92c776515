#pragma once

#include "Parloquin/Reference/ParloquinExport.h"

#include <QtWidgets/QWidget>

#include <memory>

class ParloquinDelegate;

class PARLOQUIN_EXPORT ParloquinViewController : public QWidget {
    Q_OBJECT
public:
    ~ParloquinViewController() override;

    [[nodiscard]] virtual std::shared_ptr<ParloquinDelegate> kitDelegate() const = 0;

    virtual void setKitDelegate(std::shared_ptr<ParloquinDelegate> kitDelegate) = 0;

protected:
    explicit ParloquinViewController(QWidget *parent = nullptr);
};
