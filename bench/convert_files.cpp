// Times the conversion of a project's screens, without what stands before and behind it in a run.
#include "Converter.h"
#include "Figures.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <ctime>

using namespace Qt::StringLiterals;

namespace {

double processorSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// Follows a run on the thread that it is performed on.
class ConversionTimer final
{
public:
    explicit ConversionTimer(const Converter &converter)
    {
        QObject::connect(&converter, &Converter::sigProgressChanged,
                         [this](int count, int index) { noteFile(count, index); });
        QObject::connect(&converter, &Converter::sigConvertInfo,
                         [this](const Converter::STBlock &report) { noteReport(report); });
    }

    QJsonObject figures() const
    {
        return {{"seconds"_L1, m_seconds},
                {"processor_seconds"_L1, m_processorSeconds},
                {"files"_L1, m_files},
                {"replaced"_L1, m_replaced}};
    }

private:
    void noteFile(int count, int index)
    {
        m_files = count;
        if (index == 0) {
            m_clock.start();
            m_processorSecondsBefore = processorSeconds();
        }
        // When the last file begins: nothing tells when it ends, and it is one of thousands.
        if (index == count - 1) {
            m_seconds = static_cast<double>(m_clock.nsecsElapsed()) * 1e-9;
            m_processorSeconds = processorSeconds() - m_processorSecondsBefore;
        }
    }

    void noteReport(const Converter::STBlock &report)
    {
        constexpr int replacedStatus = 0;
        m_replaced += report.status == replacedStatus ? 1 : 0;
    }

    QElapsedTimer m_clock;
    double m_processorSecondsBefore = 0;
    double m_seconds = 0;
    double m_processorSeconds = 0;
    int m_files = 0;
    int m_replaced = 0;
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QString projectDir = projectDirOf(argc, argv);
    Converter converter(projectDir);
    converter.setFilterNames(libraryNames(projectDir));
    const ConversionTimer timer(converter);
    converter.onStartConvert();
    printFigures(timer.figures());
    return 0;
}
