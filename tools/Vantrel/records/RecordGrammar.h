// The grammar of record lines, as far as this program relies on it: tags, field positions,
// field counts and file references. A line belongs to the first rule whose prefix it begins
// with, so the order of the rules is part of the grammar. docs/record-format.md is printed
// from these tables.
#pragma once

#include "RecordFields.h"

#include <QStringView>

#include <array>
#include <initializer_list>
#include <span>

namespace RecordGrammar {

inline constexpr std::size_t longestPrefix = 4;

/// The first characters of a line in one number, so that it is compared with a prefix at once.
template <RecordView View>
constexpr quint32 leadOf(View line)
{
    const auto *const text = charsOf(line);
    const auto character = [text](std::size_t index) {
        constexpr unsigned inNoPrefix = 0xff;
        constexpr unsigned bitsOfCharacter = 8;
        const unsigned code = std::make_unsigned_t<CharOf<View>>(text[index]);
        return quint32{std::min(code, inNoPrefix)} << (bitsOfCharacter * index);
    };
    if (line.size() >= qsizetype{longestPrefix})
        return character(0) | character(1) | character(2) | character(3);
    quint32 lead = 0;
    for (std::size_t index = 0; index < static_cast<std::size_t>(line.size()); ++index)
        lead |= character(index);
    return lead;
}

/// What the lines of one kind begin with.
class Prefix final : public QStringView
{
public:
    template <std::size_t Size>
    constexpr Prefix(const char16_t (&text)[Size])
        : QStringView(text)
        , m_lead(leadOf(QStringView(text)))
        , m_mask(leadOf(QStringView(u"\xff\xff\xff\xff", Size - 1)))
    {
        static_assert(Size - 1 <= longestPrefix);
    }

    constexpr bool isLeadOf(quint32 lead) const { return (lead & m_mask) == m_lead; }
    constexpr bool isSameAs(const Prefix &other) const
    {
        return m_lead == other.m_lead && m_mask == other.m_mask;
    }

private:
    quint32 m_lead;
    quint32 m_mask;
};

/// Lines that the program reads beyond checking and rewriting them.
enum class LineKind : quint8 { Section, Library, Rectangle, Points, Bitmap, Other };

struct LineTag
{
    Prefix prefix;
    LineKind kind;
};

inline constexpr Prefix sectionTag = u"ID;";
inline constexpr Prefix libraryTag = u"LIB";

inline constexpr std::array lineTags{
    LineTag{sectionTag, LineKind::Section}, LineTag{libraryTag, LineKind::Library},
    LineTag{u"PSDV", LineKind::Rectangle},  LineTag{u"PNT;", LineKind::Points},
    LineTag{u"DIV", LineKind::Bitmap},
};

/// Fields of an "ID;" line.
namespace Section {
inline constexpr qsizetype kind = 2; ///< "Icon", "Text" or another word
} // namespace Section

/// Fields of a "PNT;" line.
namespace Points {
inline constexpr qsizetype first = 3; ///< x, y, x, y, ... to the end of the line
} // namespace Points

/// Fields of a "PSDV" line.
namespace Rectangle {
inline constexpr qsizetype x1 = 1, y1 = 2, x2 = 3, y2 = 4; ///< inclusive corners
inline constexpr qsizetype counts = 6;                     ///< not 0: may become the object's main rectangle
inline constexpr qsizetype level = 11;
inline constexpr qsizetype extra = 13; ///< the first field behind the fixed ones
} // namespace Rectangle

/// Fields of a "LIB" line.
namespace Library {
inline constexpr qsizetype shapeFile = 1;
inline constexpr qsizetype initText = 3;
inline constexpr qsizetype objectName = 4;
} // namespace Library

/// Fields of a "DIV" line.
namespace Bitmap {
inline constexpr qsizetype fileName = 3;
} // namespace Bitmap

/// Fields of an axis line ("IX1", "IX2", "IY1", "IY2") that are moved with the object.
inline constexpr std::array<qsizetype, 2> axisNumbers{4, 5};
/// Fields of an axis line that are file references when they hold a ':'.
inline constexpr std::array<qsizetype, 4> axisReferences{2, 3, 4, 5};

/// An "ITXN" line: field 1 counts its entries of three fields each, from field 3 on; the last
/// field of each entry is a file reference.
namespace Entries {
inline constexpr int fieldsOfEntry = 3;
inline constexpr qsizetype firstReference = 5;
} // namespace Entries

/// The field by which a "PNT;" or "ITXN" line counts what follows.
inline constexpr qsizetype counter = 1;

/// How many fields a line has to have.
enum class FieldRule {
    AtLeast, ///< no fewer than in the table
    Points,  ///< as many as in the table, and behind them two for each point that field 1 counts
    Entries, ///< no fewer than in the table, and room for the entries that field 1 counts
};

/// One row of the check. A side that does not check the line has `notChecked`.
struct CheckRule
{
    Prefix prefix;
    QStringView messageTag; ///< as it appears in messages, not always the line's own
    FieldRule rule;
    int shapeFields;
    int imageFields;
};

inline constexpr int notChecked = 0;

inline constexpr std::array checkRules{
    CheckRule{u"ID;", u"", FieldRule::AtLeast, 3, 3},
    CheckRule{u"PNT;", u"PNT", FieldRule::Points, Points::first, Points::first},
    CheckRule{u"PSDV", u"PSDV", FieldRule::AtLeast, 13, 12},
    CheckRule{u"LIB", u"LIB", FieldRule::AtLeast, 4, 5},
    CheckRule{u"IVG", u"IVG", FieldRule::AtLeast, 2, notChecked},
    CheckRule{u"IBG", u"IBG", FieldRule::AtLeast, 2, notChecked},
    CheckRule{u"ITC", u"ITC", FieldRule::AtLeast, 2, notChecked},
    // Never reached: the three rules above take these lines.
    CheckRule{u"IVGN", u"IVGN", FieldRule::AtLeast, 3, notChecked},
    CheckRule{u"IBGN", u"ITCN", FieldRule::AtLeast, 3, notChecked},
    CheckRule{u"ITCN", u"ITCN", FieldRule::AtLeast, 3, notChecked},
    CheckRule{u"ITA", u"ITCN", FieldRule::AtLeast, 2, notChecked},
    CheckRule{u"IDMS", u"IDMS", FieldRule::AtLeast, 2, notChecked},
    CheckRule{u"ITX1", u"ITX1", FieldRule::AtLeast, 4, notChecked},
    CheckRule{u"ITX2", u"ITX2", FieldRule::AtLeast, 7, notChecked},
    CheckRule{u"ITXN", u"ITXN", FieldRule::Entries, 3, notChecked},
    CheckRule{u"IIK1", u"IIK1", FieldRule::AtLeast, 2, notChecked},
    CheckRule{u"IIK2", u"IIK2", FieldRule::AtLeast, 3, notChecked},
    CheckRule{u"IIKN", u"IIKN", FieldRule::AtLeast, 3, notChecked},
    CheckRule{u"ISB", u"ISB", FieldRule::AtLeast, 2, notChecked},
    CheckRule{u"ISA", u"ISA", FieldRule::AtLeast, 21, notChecked},
    CheckRule{u"IX1", u"IX1", FieldRule::AtLeast, 6, notChecked},
    CheckRule{u"IX2", u"IX2", FieldRule::AtLeast, 6, notChecked},
    CheckRule{u"IY1", u"IX2", FieldRule::AtLeast, 6, notChecked},
    CheckRule{u"IY2", u"IY2", FieldRule::AtLeast, 6, notChecked},
    CheckRule{u"IBW", u"IBW", FieldRule::AtLeast, 8, notChecked},
};

/// The rules that image files are held to stand first.
inline constexpr std::size_t imageCheckCount = 4;
inline constexpr std::span<const CheckRule> imageCheckRules{checkRules.data(), imageCheckCount};
inline constexpr std::span<const CheckRule> shapeCheckRules{checkRules};

static_assert(std::all_of(imageCheckRules.begin(), imageCheckRules.end(),
                          [](const CheckRule &rule) {
                              return std::any_of(lineTags.begin(), lineTags.end(), [&](const LineTag &tag) {
                                  return tag.prefix.isSameAs(rule.prefix);
                              });
                          }),
              "lines of no kind of their own are not checked in image files");

/// What happens to a line of a shape besides moving its file references.
enum class Rebase {
    References,  ///< nothing
    Initialise,  ///< the field of the initialisation prefix is set
    EachEntry,   ///< the reference of each counted entry is moved too
    ShiftAcross, ///< axis references are moved too, axis numbers move with the object
    ShiftDown,   ///< the same, downwards
};

/// Positions of file references in a line.
class ReferenceFields final
{
public:
    constexpr ReferenceFields(std::initializer_list<int> positions)
    {
        for (const int position : positions)
            m_positions[m_count++] = position;
    }
    constexpr const int *begin() const { return m_positions.data(); }
    constexpr const int *end() const { return m_positions.data() + m_count; }

private:
    std::array<int, 8> m_positions{};
    std::size_t m_count = 0;
};

/// One row of the rewriting of a shape's references.
struct RebaseRule
{
    Prefix prefix;
    Rebase kind;
    ReferenceFields references;
};

inline constexpr std::array rebaseRules{
    RebaseRule{u"LIB", Rebase::Initialise, {}},
    RebaseRule{u"IVG;", Rebase::References, {1}},
    RebaseRule{u"IBG;", Rebase::References, {1}},
    RebaseRule{u"ITC;", Rebase::References, {1}},
    RebaseRule{u"IVGN", Rebase::References, {2}},
    RebaseRule{u"IBGN", Rebase::References, {2}},
    RebaseRule{u"ITCN", Rebase::References, {2}},
    RebaseRule{u"ITA", Rebase::References, {1}},
    RebaseRule{u"IDMS", Rebase::References, {1}},
    RebaseRule{u"ITX1", Rebase::References, {1, 2, 3}},
    RebaseRule{u"ITX2", Rebase::References, {1, 2, 3, 4, 5, 6}},
    RebaseRule{u"ITXN", Rebase::EachEntry, {2}},
    RebaseRule{u"IIK1", Rebase::References, {1}},
    RebaseRule{u"IIK2", Rebase::References, {1, 2}},
    RebaseRule{u"IIKN", Rebase::References, {2}},
    RebaseRule{u"ISB", Rebase::References, {1}},
    RebaseRule{u"ISA", Rebase::References, {1, 2, 4, 6, 8, 14, 29, 20}},
    RebaseRule{u"IX1", Rebase::ShiftAcross, {1}},
    RebaseRule{u"IX2", Rebase::ShiftAcross, {1}},
    RebaseRule{u"IY1", Rebase::ShiftDown, {1}},
    RebaseRule{u"IY2", Rebase::ShiftDown, {1}},
    RebaseRule{u"IBW", Rebase::References, {7}},
};

/// The first rule whose prefix the line begins with; null where there is none.
template <RecordView View, typename Rules>
constexpr auto ruleFor(View line, const Rules &rules)
{
    const auto rule =
        std::find_if(std::begin(rules), std::end(rules), [lead = leadOf(line)](const auto &candidate) {
            return candidate.prefix.isLeadOf(lead);
        });
    return rule == std::end(rules) ? nullptr : &*rule;
}

template <typename Rules>
auto ruleFor(const QString &line, const Rules &rules)
{
    return ruleFor(QStringView(line), rules);
}

/// What a line is read as.
template <RecordView View>
constexpr LineKind kindOf(View line)
{
    const LineTag *tag = ruleFor(line, lineTags);
    return tag == nullptr ? LineKind::Other : tag->kind;
}

inline LineKind kindOf(const QString &line)
{
    return kindOf(QStringView(line));
}

} // namespace RecordGrammar
