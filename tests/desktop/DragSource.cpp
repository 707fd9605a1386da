#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <QWidget>

// Stands for a file manager: a small window, titled "Files", that files are dragged from.
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
            // Not on the stack: the other program asks for the data when the drag is over here.
            auto* const drag = new QDrag(this);
            drag->setMimeData(data);
            drag->exec(Qt::CopyAction);
        }
    }

private:
    QList<QUrl> urls;
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
