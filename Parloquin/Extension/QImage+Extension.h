#pragma once

#include "Parloquin/Toolkit/ImageView.h"

#include <QtCore/QUrl>

#include <chrono>

namespace parloquin {

/// \brief Shows a picture from the network in a view, once it is here. Main thread only.
///
/// Takes an HTTP answer with status 200 whose type begins with "image", of at most 1 MiB, that is
/// a PNG or JPEG of at most 1024 x 1024 pixels. Of any other, and where the view is gone by then,
/// nothing comes: the view keeps what it shows, and no error is reported. Nothing is cancelled: of
/// two downloads into one view the later answer stays.
/// \param contentMode set at once
/// \param timeout for the whole download, connecting included
void download(
    ImageView *view, const QUrl &from, ContentMode contentMode, std::chrono::milliseconds timeout);

} // namespace parloquin
