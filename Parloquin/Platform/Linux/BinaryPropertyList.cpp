#include "Parloquin/Platform/Linux/BinaryPropertyList.h"

#include <optional>

namespace parloquin {

namespace {

constexpr quint64 headerSize = 8; // "bplist00"
constexpr quint64 trailerSize = 32;
constexpr int depthLimit = 64;
constexpr int nodeLimit = 16 * 1024;

class Walk {
public:
    explicit Walk(const QByteArray &bytes)
        : m_bytes(bytes)
        , m_size(static_cast<quint64>(bytes.size()))
    {
    }

    bool run()
    {
        if (m_size < headerSize + trailerSize || !m_bytes.startsWith("bplist00"))
            return false;
        m_end = m_size - trailerSize;
        m_offsetSize = *number(m_size - 26, 1, m_size);
        m_refSize = *number(m_size - 25, 1, m_size);
        m_count = *number(m_size - 24, 8, m_size);
        const quint64 top = *number(m_size - 16, 8, m_size);
        m_table = *number(m_size - 8, 8, m_size);
        if (m_offsetSize < 1 || m_offsetSize > 8 || m_refSize < 1 || m_refSize > 8)
            return false;
        if (m_table < headerSize || m_table > m_end || m_count == 0
            || m_count > (m_end - m_table) / m_offsetSize)
            return false;
        return visit(top, 0);
    }

private:
    /// A big-endian number; nothing where it would reach beyond the end given.
    [[nodiscard]] std::optional<quint64> number(quint64 at, quint64 size, quint64 end) const
    {
        if (size > 8 || at > end || size > end - at)
            return std::nullopt;
        quint64 value = 0;
        for (quint64 i = 0; i < size; ++i)
            value = (value << 8) | static_cast<quint8>(m_bytes.at(static_cast<qsizetype>(at + i)));
        return value;
    }

    bool visit(quint64 object, int depth)
    {
        if (object >= m_count || depth > depthLimit || ++m_nodes > nodeLimit)
            return false;
        const auto start = number(m_table + object * m_offsetSize, m_offsetSize, m_end);
        if (!start || *start < headerSize || *start >= m_table)
            return false;

        quint64 at = *start + 1;
        const auto marker = static_cast<quint8>(m_bytes.at(static_cast<qsizetype>(*start)));
        const int kind = marker >> 4;
        quint64 count = marker & 0x0f;
        const bool isCounted = kind >= 0x4 && kind != 0x8;
        if (isCounted && count == 0x0f) { // the count stands behind, as an integer object
            const auto size = number(at, 1, m_table);
            if (!size || (*size >> 4) != 0x1)
                return false;
            const quint64 width = 1ULL << (*size & 0x0f);
            const auto value = number(at + 1, width, m_table);
            if (!value)
                return false;
            count = *value;
            at += 1 + width;
        }

        quint64 unit = 0; // bytes an item
        switch (kind) {
        case 0x0:
            return true;
        case 0x1:
        case 0x2:
            return fits(at, 1, 1ULL << count);
        case 0x3:
            return fits(at, 1, 8);
        case 0x4:
        case 0x5:
            return fits(at, count, 1);
        case 0x6:
            return fits(at, count, 2);
        case 0x8:
            return fits(at, 1, count + 1);
        case 0xa:
        case 0xc:
            unit = m_refSize;
            break;
        case 0xd:
            unit = 2 * m_refSize;
            break;
        default:
            return false;
        }
        if (!fits(at, count, unit))
            return false;
        for (quint64 i = 0; i < count * unit / m_refSize; ++i) {
            const auto next = number(at + i * m_refSize, m_refSize, m_table);
            if (!next || !visit(*next, depth + 1))
                return false;
        }
        return true;
    }

    [[nodiscard]] bool fits(quint64 at, quint64 count, quint64 unit) const
    {
        return at <= m_table && count <= (m_table - at) / unit;
    }

    const QByteArray &m_bytes;
    quint64 m_size;
    quint64 m_end = 0; // of the offset table
    quint64 m_table = 0;
    quint64 m_count = 0;
    quint64 m_offsetSize = 0;
    quint64 m_refSize = 0;
    int m_nodes = 0;
};

} // namespace

bool isPlainBinaryPropertyList(const QByteArray &bytes) { return Walk(bytes).run(); }

} // namespace parloquin
