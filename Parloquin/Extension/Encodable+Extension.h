#pragma once

#include "Parloquin/Extension/JsonType.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QStringView>

#include <functional>

namespace parloquin {

/// Of any model, by its table; dictionary() is the way in.
[[nodiscard]] QJsonObject encodedModel(const void *model, const JsonType &type);

/// \brief A model as a JSON object: empty optionals left out, enumerations as their raw values.
///
/// Any thread; cannot fail.
template <class Model> [[nodiscard]] QJsonObject dictionary(const Model &model)
{
    return encodedModel(&model, jsonType<Model>);
}

/// \brief Every field of a model for the console, a line each, nested by indentation.
///
/// Any thread. Empty optionals show as `nil`; there is no limit of depth or items. Ends without a
/// line break. Borrows the model.
class Dump {
public:
    template <class Model>
    explicit Dump(const Model &model)
        : m_model(&model)
        , m_type(&jsonType<Model>)
    {
    }

    /// \param sink gets the text in pieces of some thousand characters: in one, ten thousand
    /// countries would take as much room as the model itself
    void write(const std::function<void(QStringView)> &sink) const;

private:
    const void *m_model;
    const JsonType *m_type;
};

/// \brief The text of an object as it is signed: UTF-8, compact, keys sorted. Any thread.
[[nodiscard]] QByteArray plainJsonText(const QJsonObject &object);

/// \brief The same as it is encrypted and sent: every `/` written as `\/`. Any thread.
[[nodiscard]] QByteArray jsonText(const QJsonObject &object);

} // namespace parloquin
