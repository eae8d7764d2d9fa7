// SPDX-License-Identifier: MIT

// Another program's window that takes files: prints each dropped file's path and size in bytes.
//   pintalux_drop_target WxH+X+Y

#include <QApplication>
#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QRegularExpression>
#include <QTextStream>
#include <QWidget>

namespace {

class DropTarget : public QWidget {
public:
    DropTarget()
    {
        setAcceptDrops(true);
        setStyleSheet(QStringLiteral("background: #2E9E6B"));
    }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override
    {
        if (event->mimeData()->hasUrls())
            event->acceptProposedAction();
    }
    void dropEvent(QDropEvent* event) override
    {
        QTextStream out(stdout);
        for (const auto& url : event->mimeData()->urls())
            out << url.toLocalFile() << '\t' << QFileInfo(url.toLocalFile()).size() << '\n';
        event->acceptProposedAction();
    }
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    static const QRegularExpression form(QStringLiteral("^(\\d+)x(\\d+)\\+(\\d+)\\+(\\d+)$"));
    const auto numbers = form.match(QApplication::arguments().value(1));
    if (!numbers.hasMatch())
        return 2;
    DropTarget window;
    window.setWindowFlag(Qt::WindowStaysOnTopHint);
    window.setWindowTitle(QStringLiteral("Soltar aquí"));
    window.resize(numbers.captured(1).toInt(), numbers.captured(2).toInt());
    window.move(numbers.captured(3).toInt(), numbers.captured(4).toInt());
    window.show();
    return QApplication::exec();
}
