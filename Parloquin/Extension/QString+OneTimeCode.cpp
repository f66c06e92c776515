#include "Parloquin/Extension/QString+OneTimeCode.h"

#include <algorithm>

namespace parloquin {

namespace {

bool isAscii(QStringView text)
{
    return std::ranges::all_of(text, [](QChar unit) { return unit.unicode() < 0x80; });
}

bool isLetterOrDigit(QChar unit) { return unit.unicode() < 0x80 && unit.isLetterOrNumber(); }

} // namespace

std::optional<QString> oneTimeCode(const QString &message, const QString &host, int length)
{
    const QStringView line = QStringView(message).mid(message.lastIndexOf(u'\n') + 1);
    const qsizetype blank = line.indexOf(u' ');
    if (host.isEmpty() || blank < 0 || !line.startsWith(u'@'))
        return std::nullopt;
    // Letters beyond ASCII may be equal to ASCII's where case does not count.
    const QStringView bound = line.sliced(1, blank - 1);
    if (!isAscii(bound) || bound.compare(host, Qt::CaseInsensitive) != 0)
        return std::nullopt;
    // What stands behind the code binds it to a page within another: it is not for us.
    const QStringView code = line.sliced(blank + 1);
    if (code.size() != length + 1 || !code.startsWith(u'#')
        || !std::ranges::all_of(code.sliced(1), isLetterOrDigit))
        return std::nullopt;
    return code.sliced(1).toString();
}

} // namespace parloquin
