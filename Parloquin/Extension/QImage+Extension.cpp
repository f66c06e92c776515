#include "Parloquin/Extension/QImage+Extension.h"
#include "Parloquin/Platform/MainQueue.h"
#include "Parloquin/Transport/UrlSession.h"

#include <QtCore/QBuffer>
#include <QtCore/QPointer>
#include <QtGui/QImageReader>

#include <optional>

namespace parloquin {
namespace {

constexpr qint64 maximumBytes = 1 << 20;
constexpr int maximumSide = 1024; // px

/// The two formats a picture may have; no other installed decoder ever sees the bytes.
QByteArray formatOf(const QByteArray &data)
{
    if (data.startsWith("\x89PNG\r\n\x1a\n"))
        return QByteArrayLiteral("png");
    if (data.startsWith("\xff\xd8\xff"))
        return QByteArrayLiteral("jpeg");
    return {};
}

QImage decodedImage(QByteArray data)
{
    const QByteArray format = formatOf(data);
    if (format.isEmpty())
        return {};
    QBuffer device(&data);
    device.open(QIODevice::ReadOnly);
    QImageReader reader(&device, format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    // Asked of the header, before a single pixel is allocated: a small file may promise a huge
    // picture.
    const QSize size = reader.size();
    if (!size.isValid() || size.width() > maximumSide || size.height() > maximumSide)
        return {};
    return reader.read();
}

} // namespace

void download(
    ImageView *view, const QUrl &from, ContentMode contentMode, std::chrono::milliseconds timeout)
{
    view->setContentMode(contentMode);

    UrlRequest request;
    request.url = from;
    request.method = QByteArrayLiteral("GET");
    request.timeout = timeout;
    UrlSession::shared()
        .dataTask(
            std::move(request),
            [view = QPointer<ImageView>(view)](const std::optional<QByteArray> &data,
                const std::optional<UrlResponse> &response, const std::optional<TransportError> &) {
                if (!data || !response || response->statusCode != 200
                    || !response->mimeType.startsWith("image"))
                    return;
                const QImage image = decodedImage(*data);
                if (image.isNull())
                    return;
                onMain([view, image] {
                    if (view)
                        view->setImage(image);
                });
            },
            maximumBytes)
        ->resume();
}

} // namespace parloquin
