#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QUrl>

#include <chrono>
#include <optional>
#include <utility>

namespace parloquin {

/// \brief Header fields of a request or an answer, in order; names match whatever their case.
using HeaderFields = QList<std::pair<QByteArray, QByteArray>>;

/// \brief One HTTP request, ready to be sent; a plain value.
struct UrlRequest {
    QUrl url;
    QByteArray method;
    HeaderFields headers;
    std::optional<QByteArray> body;
    std::chrono::milliseconds timeout {}; ///< of the whole call, connecting included

    /// \brief Replaces the field, or adds it.
    ///
    /// Here and in addHeader() a null value counts as an empty one, which is sent, and line breaks,
    /// which no field can carry, become blanks.
    void setHeader(const QByteArray &name, const QByteArray &value);

    /// \brief Adds the field; a value that is there already stays, in front of a comma.
    void addHeader(const QByteArray &name, const QByteArray &value);

    /// \return the field's value; nothing where there is no such field
    [[nodiscard]] std::optional<QByteArray> header(const QByteArray &name) const;
};

} // namespace parloquin
