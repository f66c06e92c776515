#include "Parloquin/Extension/Encodable+Extension.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <algorithm>

namespace parloquin {

namespace {

QString fromStd(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QJsonValue encoded(const void *value, const JsonType &type)
{
    switch (type.kind) {
    case JsonType::Kind::text: {
        // Half a character, as from a text cut short, would make JSON that no strict reader takes.
        const auto &text = *static_cast<const QString *>(value);
        return text.isValidUtf16() ? text : QString::fromUtf8(text.toUtf8());
    }
    case JsonType::Kind::boolean:
        return *static_cast<const bool *>(value);
    case JsonType::Kind::integerEnum:
        return type.rows.integer(type.rows.rowOf(value));
    case JsonType::Kind::textEnum:
        return fromStd(type.rows.text(type.rows.rowOf(value)));
    case JsonType::Kind::list: {
        QJsonArray array;
        for (qsizetype i = 0; i < type.list.size(value); ++i)
            array.append(encoded(type.list.at(value, i), *type.list.item));
        return array;
    }
    case JsonType::Kind::model:
        return encodedModel(value, type);
    }
    return {};
}

void startLine(QString &out, qsizetype depth, const QString &name)
{
    out.append(u'\n').append(QString(depth * 2, u' ')).append(u"- ").append(name).append(u':');
}

/// Writes a value behind its name, and the lines below it.
void dumpInto(QString &out, const void *value, const JsonType &type, qsizetype depth)
{
    switch (type.kind) {
    case JsonType::Kind::text:
        out.append(u" \"").append(*static_cast<const QString *>(value)).append(u'"');
        return;
    case JsonType::Kind::boolean:
        out.append(*static_cast<const bool *>(value) ? QStringView(u" true") : u" false");
        return;
    case JsonType::Kind::integerEnum:
        out.append(u' ').append(QString::number(type.rows.integer(type.rows.rowOf(value))));
        return;
    case JsonType::Kind::textEnum:
        out.append(u" \"").append(fromStd(type.rows.text(type.rows.rowOf(value)))).append(u'"');
        return;
    case JsonType::Kind::list:
        out.append(u' ').append(QString::number(type.list.size(value))).append(u" elements");
        for (qsizetype i = 0; i < type.list.size(value); ++i) {
            startLine(out, depth, QStringLiteral("[%1]").arg(i));
            dumpInto(out, type.list.at(value, i), *type.list.item, depth + 1);
        }
        return;
    case JsonType::Kind::model:
        for (const JsonMember &member : type.members) {
            startLine(out, depth, fromStd(member.key));
            if (const void *field = member.peek(value))
                dumpInto(out, field, *member.type, depth + 1);
            else
                out.append(u" nil");
        }
        return;
    }
}

} // namespace

QJsonObject encodedModel(const void *model, const JsonType &type)
{
    QJsonObject object;
    for (const JsonMember &member : type.members) {
        if (const void *value = member.peek(model))
            object.insert(fromStd(member.key), encoded(value, *member.type));
    }
    return object;
}

QString dumpedModel(const void *model, const JsonType &type)
{
    QString out;
    dumpInto(out, model, type, 0);
    return out.remove(0, 1); // every line starts with its break
}

QByteArray plainJsonText(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QByteArray jsonText(const QJsonObject &object)
{
    const QByteArray plain = plainJsonText(object);
    // A slash stands nowhere but inside strings, and is never escaped there yet.
    const auto slashes = std::count(plain.cbegin(), plain.cend(), '/');
    QByteArray text(plain.size() + slashes, Qt::Uninitialized);
    char *to = text.data();
    for (const char c : plain) {
        if (c == '/')
            *to++ = '\\';
        *to++ = c;
    }
    return text;
}

} // namespace parloquin
