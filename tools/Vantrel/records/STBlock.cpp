// The one record of a conversion.
#include "STBlock.h"

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

struct StatusWord
{
    int status;
    QLatin1StringView word;
};

/// Every other number reads as the first one.
constexpr std::array statusWords{
    StatusWord{ReportStatus::Replaced, "REPLACE"_L1},
    StatusWord{ReportStatus::NotReplaced, "NO REPLACE"_L1},
    StatusWord{ReportStatus::Error, "ERROR"_L1},
};

} // namespace

QString statusText(int status)
{
    for (const StatusWord &row : statusWords) {
        if (row.status == status)
            return row.word;
    }
    return statusWords.front().word;
}

void clearBlock(STBlock &block)
{
    constexpr int beyondLeftAndTop = 99999;
    QStringList icons = std::move(block.missingIcons);
    icons.clear(); // keeps its storage
    block = STBlock{};
    block.missingIcons = std::move(icons);
    block.firstLine = -1;
    block.lastLine = -1;
    block.extraNumber = -1;
    block.rect.setCoords(beyondLeftAndTop, beyondLeftAndTop, 0, 0);
    block.rect2.setCoords(0, 0, 0, 0);
    block.rect3.setCoords(STBlock::noPosition.x(), STBlock::noPosition.y(), 0, 0);
}
