// SPDX-License-Identifier: MIT
#include "app/icon/AppIcon.h"
#include "controls/PushButton.h"
#include "platform/desktop/KeyLabel.h"
#include "settings/preferences/AfterCaptureTiles.h"
#include "settings/preferences/PreferencesRows.h"

#include <QBoxLayout>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPainter>

#include <array>

using namespace Qt::StringLiterals;

namespace pintalux::Preferences {

namespace {

/// The application's icon without the clear margin around it.
class IconView : public QWidget {
public:
    IconView() { setFixedSize(visibleSide, visibleSide); }

protected:
    void paintEvent(QPaintEvent*) override
    {
        constexpr int side = 60;
        const double ratio = devicePixelRatioF();
        if (icon.devicePixelRatioF() != ratio) {
            icon = AppIcon::render(int(std::lround(side * ratio)));
            icon.setDevicePixelRatio(ratio);
        }
        constexpr int cut = (side - visibleSide) / 2;
        QPainter(this).drawImage(QPointF(-cut, -cut), icon);
    }

private:
    static constexpr int visibleSide = 48;
    QImage icon;
};

QString abbreviated(const QString& path)
{
    const auto home = QDir::homePath();
    if (path == home)
        return u"~"_s;
    return path.startsWith(home + u'/') ? u'~' + path.mid(home.size()) : path;
}

/// The folder, or the nearest one above it that exists: the captures' own is made with the first of them.
QString existing(const QString& folder)
{
    auto path = QDir::cleanPath(folder);
    while (!QFileInfo(path).isDir() && !QDir(path).isRoot())
        path = QFileInfo(path).path();
    return path;
}

void chooseFolder(Settings& settings, QWidget* window)
{
    auto* panel = new QFileDialog(window, u"Carpeta"_s, existing(settings.saveFolder()));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setFileMode(QFileDialog::Directory);
    panel->setOption(QFileDialog::ShowDirsOnly);
    panel->setLabelText(QFileDialog::Accept, u"Elegir"_s);
    QObject::connect(panel, &QFileDialog::fileSelected, panel,
        [&settings](const QString& path) { settings.setSaveFolder(path); });
    panel->open();
}

void addFolderRow(Form::Group& group, Binding& binding)
{
    auto& row = group.addRow(u"Carpeta"_s);
    auto* path = new Form::Label({}, Form::folder, Form::Label::Fit::shortened);
    auto* choose = new PushButton(u"Elegir…"_s, PushButton::Kind::bordered);
    choose->setAccessibleName(u"Elegir la carpeta"_s);
    row.add(path, 24);
    row.add(choose);
    auto& settings = binding.settings;
    binding.follow(
        Setting::saveFolder, [path, &settings] { path->show(abbreviated(settings.saveFolder())); });
    QObject::connect(choose, &QAbstractButton::clicked, choose,
        [choose, &settings] { chooseFolder(settings, choose->window()); });
}

void addShortcutRow(Form::Group& group, CaptureAction action, Binding& binding)
{
    const auto& info = enumRow(action);
    auto& row = group.addRow(info.title.toString(), Form::shortcutRowHeight);
    row.setSymbol(new Form::SymbolView(info.symbol.toString(), &Theme::icon), 9);
    auto* taken = new Form::SymbolView(u"exclamationmark.triangle"_s, &Theme::warn);
    taken->setToolTip(takenShortcutText.toString());
    taken->setAccessibleName(takenShortcutText.toString());
    auto* cap = new Form::KeyCap;
    row.add(taken);
    row.add(cap, 8);
    const auto show = [cap, taken, action, &binding] {
        const auto& preset = enumRow(binding.settings.shortcutPreset());
        cap->setText(KeyLabel::hotKey(preset.modifiers, QString(QChar(enumRow(action).keyEquivalent))));
        cap->updateGeometry();
        taken->setVisible(ask(binding.host.failedShortcuts).contains(action));
    };
    binding.follow(Setting::shortcutPreset, show);
    binding.onRefresh(show);
}

} // namespace

QWidget* makeHeader(const Binding& binding)
{
    auto* header = new QWidget;
    auto* line = new QHBoxLayout(header);
    line->setContentsMargins(2, 0, 0, 3);
    line->setSpacing(14);
    line->addWidget(new IconView);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addStretch();
    texts->addWidget(new Form::Label(u"Pintalux"_s, Form::applicationName));
    const auto& version = binding.host.version;
    texts->addWidget(
        new Form::Label(u"Capturas y anotaciones · versión "_s + (version.isEmpty() ? u"1.0"_s : version),
            Form::explanation));
    texts->addStretch();
    line->addLayout(texts);
    line->addStretch();
    return header;
}

QWidget* makeCaptureGroup(Binding& binding)
{
    auto* group = new Form::Group;
    static constexpr std::array<SwitchRow, 3> rows{{
        {u"Copiar al portapapeles automáticamente", Setting::autoCopy, &Settings::autoCopy,
            &Settings::setAutoCopy},
        {u"Guardar automáticamente en la carpeta", Setting::autoSave, &Settings::autoSave,
            &Settings::setAutoSave},
        {u"Sonido al capturar", Setting::playSound, &Settings::playSound, &Settings::setPlaySound},
    }};
    for (const auto& row : rows)
        addSwitch(*group, row, binding);
    addFolderRow(*group, binding);
    return group;
}

QWidget* makeAfterCaptureGroup(Binding& binding)
{
    auto* group = new Form::Group;
    auto* tiles = new AfterCaptureTiles;
    group->add(tiles);
    auto& settings = binding.settings;
    QObject::connect(tiles, &AfterCaptureTiles::chosen, tiles,
        [&settings](AfterCapture choice) { settings.setAfterCapture(choice); });
    binding.follow(Setting::afterCapture, [tiles, &settings] { tiles->setChoice(settings.afterCapture()); });
    return group;
}

QWidget* makeShortcutGroup(Binding& binding)
{
    constexpr int listWidth = 150;
    auto* group = new Form::Group;
    auto& presets = addChoice<ShortcutPreset>(*group,
        {.title = u"Combinación",
            .setting = Setting::shortcutPreset,
            .get = &Settings::shortcutPreset,
            .set = &Settings::setShortcutPreset,
            .shownTitle
            = [](const QString& title) { return KeyLabel::text(title, KeyLabel::Scope::global); }},
        binding);
    presets.setLeastWidth(listWidth);
    for (const auto action : allCases<CaptureAction>())
        addShortcutRow(*group, action, binding);
    return group;
}

} // namespace pintalux::Preferences
