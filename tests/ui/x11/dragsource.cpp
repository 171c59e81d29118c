// A window from which a file can be dragged, as from a file manager:  dragsource PATH
#include <QApplication>
#include <QDrag>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>

namespace {

class DragSource final : public QLabel
{
public:
    explicit DragSource(QString path)
        : m_path(std::move(path))
    {
        setText(m_path);
        setWindowTitle(QStringLiteral("Drag source"));
        setFixedSize(300, 100);
    }

protected:
    void mousePressEvent(QMouseEvent *) override
    {
        auto *file = new QMimeData;
        file->setUrls({QUrl::fromLocalFile(m_path)});
        auto *drag = new QDrag(this);
        drag->setMimeData(file);
        drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::MoveAction);
    }

private:
    QString m_path;
};

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    if (argc != 2)
        return 2;
    DragSource source(QString::fromLocal8Bit(argv[1]));
    source.move(1400, 100);
    source.show();
    return QApplication::exec();
}
