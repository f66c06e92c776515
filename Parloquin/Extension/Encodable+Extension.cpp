#include "Parloquin/Extension/Encodable+Extension.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace parloquin {

namespace {

QString fromStd(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QJsonValue encoded(const void *value, const JsonType &type)
{
    switch (type.kind) {
    case JsonType::Kind::text:
        return *static_cast<const QString *>(value);
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

/// The lines of a model. What has been written goes on its way before it grows long.
class Lines {
public:
    explicit Lines(const std::function<void(QStringView)> &sink)
        : m_sink(sink)
    {
    }

    /// Every line but the first starts with its break.
    void start(qsizetype depth, const QString &name)
    {
        if (m_text.size() > most)
            passOn();
        if (!std::exchange(m_isFirst, false))
            m_text.append(u'\n');
        m_text.append(QString(depth * 2, u' ')).append(u"- ").append(name).append(u':');
    }

    QString &append(QStringView text) { return m_text.append(text); }

    void passOn()
    {
        m_sink(m_text);
        m_text.resize(0); // keeps its room
    }

private:
    static constexpr qsizetype most = 4096; // characters

    const std::function<void(QStringView)> &m_sink;
    QString m_text;
    bool m_isFirst = true;
};

/// Writes a value behind its name, and the lines below it.
void dumpInto(Lines &out, const void *value, const JsonType &type, qsizetype depth)
{
    switch (type.kind) {
    case JsonType::Kind::text:
        out.append(u" \"").append(*static_cast<const QString *>(value)).append(u'"');
        return;
    case JsonType::Kind::boolean:
        out.append(*static_cast<const bool *>(value) ? QStringView(u" true") : u" false");
        return;
    case JsonType::Kind::integerEnum:
        out.append(u" ").append(QString::number(type.rows.integer(type.rows.rowOf(value))));
        return;
    case JsonType::Kind::textEnum:
        out.append(u" \"").append(fromStd(type.rows.text(type.rows.rowOf(value)))).append(u'"');
        return;
    case JsonType::Kind::list:
        out.append(u" ").append(QString::number(type.list.size(value))).append(u" elements");
        for (qsizetype i = 0; i < type.list.size(value); ++i) {
            out.start(depth, QStringLiteral("[%1]").arg(i));
            dumpInto(out, type.list.at(value, i), *type.list.item, depth + 1);
        }
        return;
    case JsonType::Kind::model:
        for (const JsonMember &member : type.members) {
            out.start(depth, fromStd(member.key));
            if (const void *field = member.peek(value))
                dumpInto(out, field, *member.type, depth + 1);
            else
                out.append(u" nil");
        }
        return;
    }
}

enum class Slashes { plain, escaped };

/// By character: how many more it takes to write it within a JSON text (RFC 8259, section 7).
constexpr std::array<uchar, 256> escapeLengths(Slashes slashes)
{
    std::array<uchar, 256> lengths {};
    std::fill_n(lengths.begin(), 0x20, uchar { 5 }); // as \u001f
    for (const char c : { '"', '\\', '\b', '\f', '\n', '\r', '\t' })
        lengths[static_cast<uchar>(c)] = 1;
    lengths['/'] = slashes == Slashes::escaped ? 1 : 0;
    return lengths;
}

char *writeEscape(char *to, char c)
{
    constexpr std::string_view named = "\b\f\n\r\t";
    constexpr std::string_view names = "bfnrt";
    constexpr std::string_view digits = "0123456789abcdef";
    const auto value = static_cast<uchar>(c);
    *to++ = '\\';
    if (value >= 0x20)
        *to++ = c;
    else if (const auto place = named.find(c); place != std::string_view::npos)
        *to++ = names[place];
    else
        for (const char digit : { 'u', '0', '0', digits[value / 16], digits[value % 16] })
            *to++ = digit;
    return to;
}

void writeText(QByteArray &out, const QString &text, Slashes slashes)
{
    static constexpr auto plain = escapeLengths(Slashes::plain);
    static constexpr auto all = escapeLengths(Slashes::escaped);
    const auto &lengths = slashes == Slashes::plain ? plain : all;

    // Half a character, as from a text cut short, becomes a question mark: no strict reader takes
    // it. At any time there is room for the rest as it is, and beside that for what escapes add.
    const QByteArray utf8 = text.toUtf8();
    qsizetype spare = 16 + utf8.size() / 8;
    const qsizetype start = out.size();
    out.resize(start + utf8.size() + spare);
    char *to = out.data() + start;
    *to++ = '"';
    for (const char c : utf8) {
        const uchar more = lengths[static_cast<uchar>(c)];
        if (more == 0) {
            *to++ = c;
            continue;
        }
        if (spare < more + 2) { // the quotes included
            const qsizetype written = to - out.constData();
            spare += 16 + utf8.size();
            out.resize(out.size() + 16 + utf8.size());
            to = out.data() + written;
        }
        spare -= more;
        to = writeEscape(to, c);
    }
    *to++ = '"';
    out.resize(to - out.constData());
}

void writeJson(QByteArray &out, const QJsonValue &value, Slashes slashes)
{
    const char *separator = "";
    const auto next = [&] { out += std::exchange(separator, ","); };
    switch (value.type()) {
    case QJsonValue::String:
        writeText(out, value.toString(), slashes);
        return;
    case QJsonValue::Array: {
        const QJsonArray array = value.toArray();
        out += '[';
        for (const auto &item : array) {
            next();
            writeJson(out, item, slashes);
        }
        out += ']';
        return;
    }
    case QJsonValue::Object: {
        const QJsonObject object = value.toObject();
        out += '{';
        for (auto it = object.begin(); it != object.end(); ++it) {
            next();
            writeText(out, it.key(), slashes);
            out += ':';
            writeJson(out, it.value(), slashes);
        }
        out += '}';
        return;
    }
    default: // a number or a word
        out += QJsonDocument(QJsonArray { value }).toJson(QJsonDocument::Compact).chopped(1).mid(1);
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

void Dump::write(const std::function<void(QStringView)> &sink) const
{
    Lines lines(sink);
    dumpInto(lines, m_model, *m_type, 0);
    lines.passOn();
}

QByteArray plainJsonText(const QJsonObject &object)
{
    QByteArray out;
    writeJson(out, object, Slashes::plain);
    return out;
}

QByteArray jsonText(const QJsonObject &object)
{
    QByteArray out;
    writeJson(out, object, Slashes::escaped);
    return out;
}

} // namespace parloquin
