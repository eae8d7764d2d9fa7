// SPDX-License-Identifier: MIT

// A tidy little application window to look at and to capture, with a menu by the right button whose rows
// become its title. It ends on SIGTERM.
//   pintalux_demo_window --title T --geometry WxH+X+Y --color #RRGGBB [--text ...] [--above]

#include <QApplication>
#include <QCommandLineParser>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QRegularExpression>
#include <QTimer>
#include <QWidget>

#include <signal.h>

#include <array>

namespace {

constexpr std::array<QStringView, 6> months{u"Ene", u"Feb", u"Mar", u"Abr", u"May", u"Jun"};
constexpr std::array<double, 6> values{0.42, 0.58, 0.51, 0.73, 0.66, 0.94};
constexpr double margin = 24;
constexpr double headerHeight = 64;

const QString defaultText = QStringLiteral(
    "Las ventas del primer semestre crecieron un 18 %.\nLa campaña de otoño empieza el 3 de septiembre.\n"
    "Pendiente: revisar el presupuesto de diseño.");

class DemoWindow : public QWidget {
public:
    DemoWindow(QColor color, QString text)
        : accent(color)
        , body(std::move(text))
    {
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillRect(rect(), QColor(0xfb, 0xfb, 0xfd));
        paintHeader(painter);
        const double bottomOfText = paintText(painter, headerHeight + margin);
        const QRectF chart(
            margin, bottomOfText + margin, width() - 2 * margin, height() - bottomOfText - 2 * margin);
        if (chart.height() > 70 && chart.width() > 120)
            paintChart(painter, chart);
    }

    void contextMenuEvent(QContextMenuEvent* event) override
    {
        QMenu menu;
        for (const auto& row : {QStringLiteral("Copiar"), QStringLiteral("Pegar"), QStringLiteral("Borrar")})
            menu.addAction(row);
        auto* more = menu.addMenu(QStringLiteral("Más"));
        more->addAction(QStringLiteral("Imprimir"));
        if (const auto* chosen = menu.exec(event->globalPos()))
            setWindowTitle(chosen->text());
    }

private:
    void paintHeader(QPainter& painter) const
    {
        painter.fillRect(QRectF(0, 0, width(), headerHeight), accent);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(255, 255, 255, 70));
        painter.drawRoundedRect(QRectF(margin, 16, 32, 32), 9, 9);
        painter.setBrush(Qt::white);
        painter.drawEllipse(QPointF(margin + 16, 32), 7, 7);
        painter.setPen(Qt::white);
        painter.setFont(sized(16, QFont::DemiBold));
        painter.drawText(
            QRectF(margin + 44, 0, width() - 2 * margin - 44, headerHeight), Qt::AlignVCenter, windowTitle());
    }

    // Returns where the text ends.
    double paintText(QPainter& painter, double top) const
    {
        painter.setFont(sized(13, QFont::Normal));
        const double lineHeight = painter.fontMetrics().height() + 8;
        for (const auto& line : body.split(u'\n')) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(accent);
            painter.drawEllipse(QPointF(margin + 4, top + lineHeight / 2), 3.5, 3.5);
            painter.setPen(QColor(0x2b, 0x2d, 0x38));
            painter.drawText(
                QRectF(margin + 18, top, width() - 2 * margin - 18, lineHeight), Qt::AlignVCenter, line);
            top += lineHeight;
        }
        return top;
    }

    void paintChart(QPainter& painter, const QRectF& area) const
    {
        painter.setPen(QPen(QColor(0xe3, 0xe4, 0xea), 1));
        painter.setBrush(Qt::white);
        painter.drawRoundedRect(area.adjusted(0.5, 0.5, -0.5, -0.5), 10, 10);
        const QRectF plot = area.adjusted(18, 18, -18, -32);
        const double step = plot.width() / double(values.size());
        painter.setFont(sized(11, QFont::Normal));
        for (std::size_t index = 0; index < values.size(); ++index) {
            const double left = plot.left() + step * double(index);
            QRectF bar(left + step * 0.2, 0, step * 0.6, plot.height() * values[index]);
            bar.moveBottom(plot.bottom());
            painter.setPen(Qt::NoPen);
            painter.setBrush(index + 1 == values.size() ? accent : accent.lighter(150));
            painter.drawRoundedRect(bar, 4, 4);
            painter.setPen(QColor(0x80, 0x83, 0x91));
            painter.drawText(
                QRectF(left, plot.bottom() + 4, step, 20), Qt::AlignCenter, months[index].toString());
        }
    }

    static QFont sized(int pixels, QFont::Weight weight)
    {
        QFont font(QStringLiteral("Inter"));
        font.setPixelSize(pixels);
        font.setWeight(weight);
        return font;
    }

    QColor accent;
    QString body;
};

volatile sig_atomic_t asked = 0;

} // namespace

int main(int argc, char** argv)
{
    // Read before the toolkit takes the options that it knows by the same names.
    QStringList arguments;
    for (int index = 0; index < argc; ++index)
        arguments.append(QString::fromLocal8Bit(argv[index]));
    int programNameOnly = 1;
    QApplication application(programNameOnly, argv);
    QApplication::setApplicationName(QStringLiteral("Demostración"));
    QCommandLineParser options;
    const QString title = QStringLiteral("title");
    const QString geometry = QStringLiteral("geometry");
    const QString color = QStringLiteral("color");
    const QString text = QStringLiteral("text");
    options.addOption({title, title, title, QStringLiteral("Informe")});
    options.addOption({geometry, geometry, geometry, QStringLiteral("520x400+100+100")});
    options.addOption({color, color, color, QStringLiteral("#3B6FE0")});
    options.addOption({text, text, text, defaultText});
    const QString above = QStringLiteral("above");
    options.addOption({above, QStringLiteral("stay above other windows")});
    options.process(arguments);

    static const QRegularExpression form(QStringLiteral("^(\\d+)x(\\d+)\\+(-?\\d+)\\+(-?\\d+)$"));
    const auto numbers = form.match(options.value(geometry));
    if (!numbers.hasMatch()) {
        qWarning("pintalux_demo_window: the geometry must be WxH+X+Y");
        return 2;
    }
    DemoWindow window(QColor(options.value(color)), options.value(text));
    window.setWindowTitle(options.value(title));
    window.setWindowFlag(Qt::WindowStaysOnTopHint, options.isSet(above));
    window.resize(numbers.captured(1).toInt(), numbers.captured(2).toInt());
    window.move(numbers.captured(3).toInt(), numbers.captured(4).toInt());
    window.show();

    signal(SIGTERM, [](int) { asked = 1; });
    signal(SIGINT, [](int) { asked = 1; });
    QTimer watch;
    watch.callOnTimeout([] {
        if (asked)
            QApplication::quit();
    });
    watch.start(50);
    return QApplication::exec();
}
