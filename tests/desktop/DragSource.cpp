#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <QWidget>

// Stands for a file manager: a small window, titled "Files", that files are dragged from. Ends by itself when
// they have been dropped and the other program has fetched them; its exit code says whether they were taken.
//
//     drag_source X Y FILE ...

namespace {

class CDragSource final : public QWidget {
public:
    explicit CDragSource(const QStringList& files)
    {
        for (const QString& file : files) {
            urls += QUrl::fromLocalFile(file);
        }
        setWindowTitle(QStringLiteral("Files"));
    }

protected:
    void mouseMoveEvent(QMouseEvent* event) override
    {
        if ((event->buttons() & Qt::LeftButton) != 0) {
            auto* const data = new QMimeData();
            data->setUrls(urls);
            // The other program asks for the data when the drag is over here; then the drag deletes itself.
            auto* const drag = new QDrag(this);
            drag->setMimeData(data);
            connect(drag, &QObject::destroyed, qApp,
                    [this] { QApplication::exit(action == Qt::CopyAction ? EXIT_SUCCESS : EXIT_FAILURE); });
            action = drag->exec(Qt::CopyAction);
        }
    }

private:
    QList<QUrl> urls;
    Qt::DropAction action = Qt::IgnoreAction; // that the drag has ended with
};

} // namespace

int main(int argumentCount, char** arguments)
{
    QApplication application(argumentCount, arguments);
    const QStringList words = QApplication::arguments();
    CDragSource source(words.mid(3));
    source.setGeometry(words.value(1).toInt(), words.value(2).toInt(), 60, 60);
    source.show();
    return QApplication::exec();
}
