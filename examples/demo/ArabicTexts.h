#pragma once

#include <QtCore/QTranslator>

namespace demo {

/// \brief The host's own texts in Arabic, so that a right-to-left run reads as one would ship it.
///
/// A table in the program instead of a catalogue: two dozen texts need no tool chain.
class ArabicTexts : public QTranslator {
    Q_OBJECT
public:
    using QTranslator::QTranslator;

    [[nodiscard]] bool isEmpty() const override { return false; }
    /// \return null for a text that is not in the table; Qt then shows the source
    [[nodiscard]] QString translate(
        const char *context, const char *source, const char *disambiguation, int n) const override;
};

} // namespace demo
