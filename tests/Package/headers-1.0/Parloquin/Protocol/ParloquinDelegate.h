#pragma once

#include "Parloquin/Model/Enum/ParloquinError.h"
#include "Parloquin/Reference/ParloquinExport.h"

#include <QtCore/QString>

class PARLOQUIN_EXPORT ParloquinDelegate {
public:
    virtual ~ParloquinDelegate();

    virtual void verificationDidSucceed(const QString &sessionId) = 0;

    virtual void verificationDidFail(ParloquinError error) = 0;

protected:
    ParloquinDelegate() = default;
    ParloquinDelegate(const ParloquinDelegate &) = default;
    ParloquinDelegate &operator=(const ParloquinDelegate &) = default;
};
