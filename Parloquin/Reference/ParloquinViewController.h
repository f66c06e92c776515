#pragma once

#include "Parloquin/Reference/ParloquinExport.h"

#include <QtWidgets/QWidget>

#include <memory>

class ParloquinDelegate;

/// \brief The container a host presents: the whole verification, as one widget.
///
/// Show it as a window, or put it into a layout of your own. It loads its first screen, and sends
/// its first request, when it is first shown. Main thread only. The host owns it the Qt way: a
/// parent, `delete`, or `Qt::WA_DeleteOnClose`. Its Close button calls QWidget::close() and tells
/// the delegate nothing.
///
/// A host that draws the device's status area over the container says how high it is with
/// `setContentsMargins(0, height, 0, 0)`; the bar's blue then reaches up behind it. The other three
/// margins inset the pages.
///
/// For automation, every control bears an object name, and the property `atRest` is true while no
/// slide, scroll or overlay is under way: what is seen then stays until someone acts or an answer
/// comes.
/// \since 1.0
class PARLOQUIN_EXPORT ParloquinViewController : public QWidget {
    Q_OBJECT
public:
    ~ParloquinViewController() override;

    /// \return the delegate last set, or null
    [[nodiscard]] virtual std::shared_ptr<ParloquinDelegate> kitDelegate() const = 0;

    /// \brief Sets who hears the outcome, in this container and for the whole process.
    ///
    /// The last delegate set anywhere wins and is kept until another replaces it, also after this
    /// container is gone. Null removes it: outcomes are then dropped.
    virtual void setKitDelegate(std::shared_ptr<ParloquinDelegate> kitDelegate) = 0;

protected:
    /// \cond
    explicit ParloquinViewController(QWidget *parent = nullptr);
    /// \endcond
};
