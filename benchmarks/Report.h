#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <cstdio>
#include <vector>

using Samples = std::vector<double>;

/// \param share 0.5 is the median, 0.99 the 99th percentile
[[nodiscard]] double quantile(Samples samples, double share);
[[nodiscard]] inline double median(Samples samples) { return quantile(std::move(samples), 0.5); }

/// \brief The table of all cases, and the machine that they ran on.
class Report {
public:
    /// \param isSlow the processor is held back, and a run would otherwise take an hour
    explicit Report(bool isSlow = false);

    /// \return how often to measure what at full speed is measured that often
    [[nodiscard]] int rounds(int atFullSpeed) const
    {
        return m_isSlow ? atFullSpeed / 5 : atFullSpeed;
    }

    /// \param goal the largest ratio of kit to floor that is good enough
    void add(const QString &name, double kit, double floor, const QString &unit, double goal);
    void addMedians(const QString &name, const Samples &kit, const Samples &floor,
        const QString &unit, double goal)
    {
        add(name, median(kit), median(floor), unit, goal);
    }
    /// A line below the table.
    void note(const QString &text) { m_notes.append(text); }

    void print(std::FILE *out) const;
    [[nodiscard]] bool writeJson(const QString &path) const;
    [[nodiscard]] bool writePicture(const QString &path) const;

private:
    struct Row {
        QString name;
        double kit;
        double floor;
        QString unit;
        double goal;
        [[nodiscard]] double ratio() const { return kit / floor; }
        [[nodiscard]] bool isMet() const { return ratio() <= goal; }
    };

    const bool m_isSlow;
    QString m_machine;
    std::vector<Row> m_rows;
    QStringList m_notes;
};
