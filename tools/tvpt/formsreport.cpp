#include "formsreport.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <vector>

#include <tvcore/datamodelids.h>
#include <tvutil/cxstring.h>
#include <tvutil/singleline.h>

namespace
{

using nlohmann::ordered_json;

using TableRow = std::array<std::string, 7>;

TableRow RowOf(const FormsInfoRecord& form)
{
    return {std::to_string(form.paperId),
            SingleLine(form.GetName()).ToUtf8(), // anybody may have named it
            MillimetersText(form.width),
            MillimetersText(form.length),
            form.units == DataModelIds::Value::UnitsInches ? "inches" : "metric",
            std::to_string(form.formType),
            std::to_string(form.valueId)};
}

// Columns are aligned by characters, not by bytes.
std::size_t WidthOf(const std::string& utf8)
{
    return static_cast<std::size_t>(
        std::count_if(utf8.begin(), utf8.end(), [](char unit) { return (unit & 0xC0) != 0x80; }));
}

} // namespace

ordered_json DescribeForms(std::span<const FormsInfoRecord> forms)
{
    ordered_json list = ordered_json::array();
    for (const FormsInfoRecord& form : forms)
        list.push_back({{"paperId", form.paperId},
                        {"name", CXString(form.GetName()).ToUtf8()},
                        {"width", form.width},
                        {"length", form.length},
                        {"units", form.units},
                        {"type", form.formType},
                        {"valueId", form.valueId}});
    return list;
}

std::string FormTable(std::span<const FormsInfoRecord> forms)
{
    std::vector<TableRow> rows = {{"paper", "name", "width/mm", "length/mm", "units", "type", "value"}};
    std::transform(forms.begin(), forms.end(), std::back_inserter(rows), RowOf);
    TableRow::size_type columns = rows.front().size();
    std::vector<std::size_t> widths(columns);
    for (const TableRow& row : rows)
        for (std::size_t column = 0; column < columns; ++column)
            widths[column] = std::max(widths[column], WidthOf(row[column]));
    std::string text;
    for (const TableRow& row : rows)
    {
        for (std::size_t column = 0; column + 1 < columns; ++column)
            text += row[column] + std::string(widths[column] - WidthOf(row[column]) + 2, ' ');
        text += row.back() + "\n";
    }
    return text;
}

std::string MillimetersText(std::int32_t tenths)
{
    const std::int64_t size = std::abs(std::int64_t{tenths});
    const std::string whole = (tenths < 0 ? "-" : "") + std::to_string(size / 10);
    return size % 10 == 0 ? whole : whole + "." + std::to_string(size % 10);
}
