// The steps that lead from one list of lines to another.
#include "EditScript.h"

#include "Interruption.h"
#include "Limits.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace {

constexpr std::size_t asIndex(int number)
{
    return static_cast<std::size_t>(number);
}

/// Finds the way by the O(NP) algorithm of Wu, Manber, Myers and Miller: on each diagonal it keeps
/// the point that is reached furthest with a number of lines left out of the shorter list. Beyond
/// a number of points it takes the way that it has, and begins again behind it.
class EditGraph final
{
public:
    EditGraph(const std::vector<int> &shorter, const std::vector<int> &longer)
        : m_shorter(shorter)
        , m_longer(longer)
    {
    }

    /// Signs for lines of the shorter list only, of the longer one only, and of both.
    QByteArray script(char ofShorter, char ofLonger);

private:
    /// A place in both lists, and the point on whose way it lies; -1 at the beginning.
    struct Point
    {
        int inShorter;
        int inLonger;
        int former;
    };

    /// How far a diagonal was followed; `point` is the last one on it.
    struct Reach
    {
        int inLonger = -1;
        int point = -1;
    };

    void findPiece();
    void follow(int diagonal);
    std::vector<Point> wayToPiecesEnd() const;
    void takePiece(char ofShorter, char ofLonger);
    Reach &reach(int diagonal) { return m_reach[asIndex(diagonal + m_offset)]; }
    int shorterLeft() const { return static_cast<int>(m_shorter.size()) - m_start.inShorter; }
    int longerLeft() const { return static_cast<int>(m_longer.size()) - m_start.inLonger; }
    bool isWorthAPiece() const
    {
        return shorterLeft() > 0 && longerLeft() - shorterLeft() <= mostEditPointsOfPiece;
    }

    const std::vector<int> &m_shorter;
    const std::vector<int> &m_longer;
    Point m_start{0, 0, -1}; ///< of the piece; its points count from here
    std::vector<Point> m_points;
    std::vector<Reach> m_reach;
    int m_offset = 0;
    int m_lastDiagonal = 0; ///< on which both lists end
    QByteArray m_script;
};

QByteArray EditGraph::script(char ofShorter, char ofLonger)
{
    m_script.reserve(static_cast<qsizetype>(m_longer.size()));
    for (std::size_t points = 0; isWorthAPiece() && points < mostEditPoints; points += m_points.size()) {
        endIfInterrupted();
        findPiece();
        takePiece(ofShorter, ofLonger);
    }
    m_script.append(shorterLeft(), ofShorter);
    m_script.append(longerLeft(), ofLonger);
    return m_script;
}

void EditGraph::findPiece()
{
    m_offset = shorterLeft() + 1;
    m_lastDiagonal = longerLeft() - shorterLeft();
    m_points.clear();
    m_reach.assign(asIndex(shorterLeft()) + asIndex(longerLeft()) + 3, {});
    for (int leftOut = 0;; ++leftOut) {
        for (int diagonal = -leftOut; diagonal < m_lastDiagonal; ++diagonal)
            follow(diagonal);
        for (int diagonal = m_lastDiagonal + leftOut; diagonal >= m_lastDiagonal; --diagonal)
            follow(diagonal);
        if (reach(m_lastDiagonal).inLonger == longerLeft() ||
            m_points.size() >= std::size_t{mostEditPointsOfPiece})
            return;
    }
}

/// Goes on from the neighbour that is further, along all lines that are equal.
void EditGraph::follow(int diagonal)
{
    const Reach &above = reach(diagonal - 1);
    const Reach &below = reach(diagonal + 1);
    const int former = above.inLonger + 1 > below.inLonger ? above.point : below.point;
    int inLonger = std::max(above.inLonger + 1, below.inLonger);
    int inShorter = inLonger - diagonal;
    const auto isEqual = [this](int shorter, int longer) {
        return m_shorter[asIndex(m_start.inShorter + shorter)] ==
               m_longer[asIndex(m_start.inLonger + longer)];
    };
    while (inShorter < shorterLeft() && inLonger < longerLeft() && isEqual(inShorter, inLonger)) {
        ++inShorter;
        ++inLonger;
    }
    reach(diagonal) = {inLonger, static_cast<int>(m_points.size())};
    m_points.push_back({inShorter, inLonger, former});
}

std::vector<EditGraph::Point> EditGraph::wayToPiecesEnd() const
{
    std::vector<Point> way;
    int point = m_reach[asIndex(m_lastDiagonal + m_offset)].point;
    while (point >= 0) {
        way.push_back(m_points[asIndex(point)]);
        point = way.back().former;
    }
    std::reverse(way.begin(), way.end());
    return way;
}

void EditGraph::takePiece(char ofShorter, char ofLonger)
{
    int inShorter = 0;
    int inLonger = 0;
    for (const Point &point : wayToPiecesEnd()) {
        const int diagonal = point.inLonger - point.inShorter;
        while (inShorter < point.inShorter || inLonger < point.inLonger) {
            const int here = inLonger - inShorter;
            m_script.append(diagonal > here ? ofLonger : (diagonal < here ? ofShorter : ' '));
            inLonger += diagonal >= here ? 1 : 0;
            inShorter += diagonal <= here ? 1 : 0;
        }
    }
    m_start.inShorter += inShorter;
    m_start.inLonger += inLonger;
}

} // namespace

QByteArray editScript(const std::vector<int> &before, const std::vector<int> &after)
{
    if (before.size() < after.size())
        return EditGraph(before, after).script('-', '+');
    return EditGraph(after, before).script('+', '-');
}
