#include "complugins/renjtifforxps.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include <tvcore/featurereferences.h>
#include <tvcore/featureservices.h>

#include "complugins/jtifkeywords.h"

namespace
{

using namespace Jtif;

// Null for a value that has no text.
const ValueText* FindText(std::span<const ValueText> texts, tagValueEnum value)
{
    const auto found =
        std::find_if(texts.begin(), texts.end(), [value](const ValueText& row) { return row.value == value; });
    return found != texts.end() ? &*found : nullptr;
}

std::string_view OpacityOf(tagValueEnum media)
{
    return media == Value::MediaTransparency ? kTransparency : kOpaque;
}

// The opacity within a list whose items blanks divide: a blank of its own is the digit 8. No word has one today.
std::string AsListItem(std::string_view opacity)
{
    std::string item(opacity);
    std::replace(item.begin(), item.end(), ' ', '8');
    return item;
}

class LineWriter
{
public:
    explicit LineWriter(FeatureServices& features) : m_features(features)
    {
    }

    void Write(const Line& line);

    [[nodiscard]] const ByteBuffer& GetText() const
    {
        return m_text;
    }

private:
    [[nodiscard]] std::optional<ValueId> FindOption(const FeatureIdWithContext& feature) const
    {
        return OptionFeatureRef(m_features, feature).GetValue();
    }
    // A feature without a value counts as automatic.
    [[nodiscard]] tagValueEnum OptionOrAutomatic(const FeatureIdWithContext& feature) const
    {
        return FindOption(feature).value_or(ValueId()).GetValueEnum();
    }

    template <class Text>
    void Append(std::string_view keyword, const Text& value)
    {
        m_text.appendAscii(keyword);
        m_text.appendAscii(value);
        m_text.appendAscii("\n");
    }

    void WriteText(const Line& line);
    void WriteNumber(const Line& line);
    void WriteOption(const Line& line);
    void WriteName(std::string_view keyword, const ValueId& value);
    void WriteShift(const Line& line);
    void WriteShiftOfBack(const Line& line);
    void WriteFinishing(const Line& line);
    void WriteSlots(const FinishingText* finishing);
    void WritePaperType(const Line& line);
    [[nodiscard]] std::string PreFinishOf(tagValueEnum media) const;
    void WalkPageExceptions(const Line& line) const;

    FeatureServices& m_features;
    ByteBuffer m_text;
};

void LineWriter::Write(const Line& line)
{
    switch (line.rule)
    {
    case Rule::Always:
        return m_text.appendAscii(line.keyword);
    case Rule::Text:
        return WriteText(line);
    case Rule::Number:
        return WriteNumber(line);
    case Rule::Word:
    case Rule::StoredLine:
    case Rule::Name:
        return WriteOption(line);
    case Rule::Shift:
        return WriteShift(line);
    case Rule::ShiftOfBack:
        return WriteShiftOfBack(line);
    case Rule::Finishing:
        return WriteFinishing(line);
    case Rule::PaperOpacity:
    case Rule::PaperPreFinish:
        return WritePaperType(line);
    case Rule::PageExceptions:
        return WalkPageExceptions(line);
    }
}

// As it comes, neither quoted nor escaped: the data model's texts are of one line. An empty text is a value too.
void LineWriter::WriteText(const Line& line)
{
    if (const auto text = StringFeatureRef(m_features, line.feature).GetValue())
        Append(line.keyword, text->View());
    else if (!line.absent.empty())
        Append(line.keyword, line.absent);
}

void LineWriter::WriteNumber(const Line& line)
{
    if (const auto number = IntegerFeatureRef(m_features, line.feature).GetValue())
        Append(line.keyword, std::string_view(std::to_string(*number)));
}

// A feature without a value writes nothing, also where the automatic value has a line: nobody has said anything.
void LineWriter::WriteOption(const Line& line)
{
    const std::optional<ValueId> value = FindOption(line.feature);
    if (!value)
        return;
    const ValueText* const row = FindText(line.values, value->GetValueEnum());
    if (row != nullptr && line.rule == Rule::StoredLine)
        m_text.appendAscii(row->text);
    else if (row != nullptr)
        Append(line.keyword, row->text);
    else if (line.rule == Rule::Name)
        WriteName(line.keyword, *value);
}

void LineWriter::WriteName(std::string_view keyword, const ValueId& value)
{
    if (value.GetValueName().IsEmpty())
        Append(keyword, FeatureCatalogue::NameOfValue(value.GetValueEnum()));
    else
        Append(keyword, value.GetValueName().View());
}

void LineWriter::WriteShift(const Line& line)
{
    if (const auto shift = DimensionFeatureRef(m_features, line.feature).GetValue())
        Append(line.keyword, std::string_view(std::to_string(shift->GetValue(Dimension::Millimeters).GetLongValue())));
}

// A plex that is automatic, or that nobody has set, may turn out as duplex.
void LineWriter::WriteShiftOfBack(const Line& line)
{
    if (OptionOrAutomatic(Feature::JobPlex) != Value::Simplex)
        WriteShift(line);
}

void LineWriter::WriteFinishing(const Line& line)
{
    const ValueId bypass = FindOption(line.feature).value_or(ValueId());
    if (bypass.GetValueEnum() != Value::Automatic)
        return WriteName(kFinishingBypass, bypass);

    const auto slipSheeting = FeatureIdWithContext(Feature::SlipSheeting).PushFeature(Feature::Finishing);
    if (OptionOrAutomatic(slipSheeting) != Value::Automatic)
    {
        m_text.appendAscii(kSlipSheeting);
        return WriteSlots(nullptr); // slip sheets exclude every other finishing
    }
    const tagValueEnum chosen = OptionOrAutomatic(Feature::Finishing);
    const auto found = std::find_if(std::begin(kFinishing), std::end(kFinishing),
                                    [chosen](const FinishingText& row) { return row.value == chosen; });
    WriteSlots(found != std::end(kFinishing) ? &*found : nullptr);
}

// One slot holds the finishing at most; null: none does.
void LineWriter::WriteSlots(const FinishingText* finishing)
{
    for (std::size_t slot = 0; slot < std::size(kSlotLines); ++slot)
    {
        const SlotLine& line = kSlotLines[slot];
        if (finishing != nullptr && finishing->slot == static_cast<Slot>(slot))
            Append(line.keyword, finishing->text);
        else
            m_text.appendAscii(line.emptyLine);
    }
}

void LineWriter::WritePaperType(const Line& line)
{
    const tagValueEnum media = OptionOrAutomatic(line.feature);
    if (media == Value::Automatic)
        return;
    if (line.rule == Rule::PaperOpacity)
        Append(line.keyword, OpacityOf(media));
    else
        Append(line.keyword, std::string_view(PreFinishOf(media)));
}

std::string LineWriter::PreFinishOf(tagValueEnum media) const
{
    const bool isDrilled = OptionOrAutomatic(Feature::PaperDrilling) == Value::PaperDrilled;
    const std::string tabs =
        std::to_string(std::max(IntegerFeatureRef(m_features, Feature::TabCount).GetValue().value_or(0), 0));
    const auto found = std::find_if(std::begin(kPreFinish), std::end(kPreFinish),
                                    [media](const PreFinish& row) { return row.media == media; });
    if (found == std::end(kPreFinish))
        return AsListItem(OpacityOf(media)) + std::string(isDrilled ? kDrilledOther : kUndrilledOther) + tabs;
    return std::string(isDrilled ? found->drilled : found->undrilled) + (found->isFollowedByTabs ? tabs : "");
}

// Item by item, and nothing is written: tickets carry no page exceptions. That is intended and must stay so.
void LineWriter::WalkPageExceptions(const Line& line) const
{
    const ListOfValuesRef exceptions(m_features, line.feature);
    for (std::size_t item = 0; item < exceptions.GetNumItems(); ++item)
        static_cast<void>(exceptions.GetListOfFeatures(item));
}

} // namespace

bool RenJtifForXps::WriteLines(FeatureServices& features, ByteBuffer& jobTicket)
{
    LineWriter writer(features);
    for (const Line& line : kLines)
        writer.Write(line);
    jobTicket.append(writer.GetText().bytes());
    return true;
}
