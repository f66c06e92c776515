#pragma once

#include "Parloquin/Model/CountryModel.h"
#include "Parloquin/Toolkit/TableView.h"

#include <optional>

namespace parloquin {

class ImageView;
class Label;

/// \brief One country of the picker: name, tick when it is the current one, dialling prefix.
class CountryTableCell : public TableCell {
    Q_OBJECT
public:
    explicit CountryTableCell(QWidget *parent = nullptr);

    void setCell(const CountryModel &model);
    /// What a row shows as a country's name.
    [[nodiscard]] static QString titleOf(const CountryModel &model);
    [[nodiscard]] const std::optional<CountryModel> &countryModel() const { return m_country; }

    /// Whether this is the current country; it alone bears the tick.
    void setSelectedState(bool selected);
    [[nodiscard]] bool selectedState() const { return m_selected; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    std::optional<CountryModel> m_country;
    bool m_selected = false;
    ImageView *iconTick;
    Label *lblTitle;
    Label *lblPhoneCode;
};

} // namespace parloquin
