// The host's property list.
#include "Parloquin/Platform/InfoDictionary.h"
#include "fuzz/Fuzz.h"

#include <QtCore/QDataStream>
#include <QtCore/QIODevice>
#include <QtCore/QLocale>
#include <QtCore/QResource>

namespace {

/// The list compiled into the program: a resource of a folder with one file, as rcc lays it out.
class CompiledList {
public:
    explicit CompiledList(const QByteArray &list)
    {
        const QString name = QStringLiteral("Info.plist");
        constexpr quint32 header = 20;
        constexpr quint32 names = header + 2 * 14;
        constexpr quint32 hashOfName = 0x025d3904;
        const quint32 contents = names + 6 + 2 * static_cast<quint32>(name.size());
        QDataStream out(&m_bytes, QIODevice::WriteOnly);
        out.writeRawData("qres", 4);
        out << quint32(1) << header << contents << names;
        out << quint32(0) << quint16(2) << quint32(1) << quint32(1); // the folder
        out << quint32(0) << quint16(0) << quint32(QLocale::C) << quint32(0); // the file
        out << static_cast<quint16>(name.size()) << hashOfName;
        for (const QChar c : name)
            out << c.unicode();
        out << static_cast<quint32>(list.size());
        out.writeRawData(list.constData(), static_cast<int>(list.size()));
        require(QResource::registerResource(data()), "it is a resource");
    }
    ~CompiledList() { QResource::unregisterResource(data()); }
    Q_DISABLE_COPY_MOVE(CompiledList)

private:
    [[nodiscard]] const uchar *data() const
    {
        return reinterpret_cast<const uchar *>(m_bytes.constData());
    }
    QByteArray m_bytes;
};

std::optional<QString> read(const QByteArray &list)
{
    const CompiledList compiled(list);
    return parloquin::infoDictionaryText(QStringLiteral("ParloquinKey"));
}

/// What an XML document can hold of a text.
QString writable(QString text)
{
    for (QChar &c : text) {
        if (c.unicode() < 0x20 || c.unicode() == 0x7f || c.isSurrogate() || c.unicode() >= 0xfeff)
            c = u'.';
    }
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = bytesOf(data, size);
    require(!read(bytes) || size <= 65536, "a long list is none");

    const QString text = writable(QString::fromUtf8(bytes));
    require(read("<plist version=\"1.0\"><dict><key>ParloquinKey</key><string>"
                + text.toHtmlEscaped().toUtf8() + "</string></dict></plist>")
            == text,
        "what is written is read");
    return 0;
}
