// The host's property list, compiled in.
#include "Parloquin/Platform/InfoDictionary.h"
#include "fuzz/Fuzz.h"

#include <QtCore/QDataStream>
#include <QtCore/QIODevice>
#include <QtCore/QLocale>
#include <QtCore/QResource>

namespace {

std::optional<QString> read(const QByteArray &list)
{
    // A resource of a folder with one file, as rcc lays it out.
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.writeRawData("qres", 4);
    out << quint32(1) << quint32(20) << quint32(74) << quint32(48); // places: tree, contents, names
    out << quint32(0) << quint16(2) << quint32(1) << quint32(1); // the folder
    out << quint32(0) << quint16(0) << quint32(QLocale::C) << quint32(0); // the file
    out << quint16(10) << quint32(0x025d3904); // of the name: length, hash
    for (const char16_t c : std::u16string_view(u"Info.plist"))
        out << c;
    out << static_cast<quint32>(list.size());
    out.writeRawData(list.constData(), static_cast<int>(list.size()));

    const auto *resource = reinterpret_cast<const uchar *>(bytes.constData());
    require(QResource::registerResource(resource), "it is a resource");
    auto text = parloquin::infoDictionaryText(QStringLiteral("ParloquinKey"));
    QResource::unregisterResource(resource);
    return text;
}

} // namespace

void fuzz(const QByteArray &bytes)
{
    require(!read(bytes) || bytes.size() <= 65536, "a long list is none");
    // Each byte of a short list set to each value: never a read beyond its end (the sanitizer
    // watches).
    QByteArray damaged = bytes;
    for (qsizetype i = 0; i < bytes.size() && bytes.size() < 128; ++i) {
        for (int value = 0; value < 256; ++value) {
            damaged[i] = static_cast<char>(value);
            (void)read(damaged);
        }
        damaged[i] = bytes[i];
    }
    const QByteArray text = bytes.toPercentEncoding(" !\"#$'()*+,/:;=?@[]");
    require(bytes.size() > 10000
            || read("<plist><dict><key>ParloquinKey</key><string>" + text
                   + "</string></dict></plist>")
                == QString::fromLatin1(text),
        "what is written is read");
}
