// SPDX-License-Identifier: MIT
#pragma once

#include "model/CaptureAction.h"
#include "model/Palette.h"
#include "model/Tool.h"
#include "platform/base/StringEnum.h"
#include "platform/base/UserDefaults.h"

#include <QColor>
#include <QObject>
#include <QString>

#include <array>
#include <variant>

namespace pintalux {

/// What happens to a fresh capture, besides copying and saving.
enum class AfterCapture { editor, thumbnail, copyOnly };

inline constexpr std::array<TitledRow<AfterCapture>, 3> afterCaptureTable{{
    {AfterCapture::editor, u"editor", u"Abrir el editor directamente"},
    {AfterCapture::thumbnail, u"thumbnail", u"Mostrar miniatura flotante"},
    {AfterCapture::copyOnly, u"copyOnly", u"Solo copiar (y guardar si está activado)"},
}};
constexpr const auto& enumTable(AfterCapture) { return afterCaptureTable; }

/// The side of the editor window along which the tool palette sits.
enum class PaletteEdge { bottom, top, left, right };

inline constexpr std::array<TitledRow<PaletteEdge>, 4> paletteEdgeTable{{
    {PaletteEdge::bottom, u"bottom", u"Abajo"},
    {PaletteEdge::top, u"top", u"Arriba"},
    {PaletteEdge::left, u"left", u"Izquierda"},
    {PaletteEdge::right, u"right", u"Derecha"},
}};
constexpr const auto& enumTable(PaletteEdge) { return paletteEdgeTable; }

constexpr bool isVertical(PaletteEdge edge)
{
    return edge == PaletteEdge::left || edge == PaletteEdge::right;
}

static_assert(isComplete<AfterCapture>() && isComplete<PaletteEdge>());

/// The values of all settings. The initial ones are those that the program ships with.
struct SettingsValues {
    SettingsValues();

    bool autoCopy = true;
    bool autoSave = false;
    bool playSound = false;
    QString saveFolder; ///< `Settings::defaultFolder`
    ShortcutPreset shortcutPreset = ShortcutPreset::controlShift;
    AfterCapture afterCapture = AfterCapture::editor;
    QColor lastColor = Palette::annotation().front().color;
    double strokeWidth = 4; ///< points, as stored: any finite number
    ArrowStyle arrowStyle = ArrowStyle::sketch;
    bool handwritten = true;
    bool calloutText = true;
    PaletteEdge paletteEdge = PaletteEdge::bottom;
    bool toolbarHidden = false;
    bool beautifyByDefault = false;
    int lastGradient = 0; ///< as stored: not always an index into `Palette::gradients`

    bool operator==(const SettingsValues&) const = default;
};

/// The stroke widths that a person can choose; points.
inline constexpr int thinnestStroke = 1;
inline constexpr int thickestStroke = 20;

/// The names of the settings, in the order in which they are read, applied and announced.
enum class Setting {
    autoCopy,
    autoSave,
    playSound,
    afterCapture,
    shortcutPreset,
    saveFolder,
    lastColor,
    strokeWidth,
    arrowStyle,
    handwritten,
    calloutText,
    paletteEdge,
    toolbarHidden,
    beautifyByDefault,
    lastGradient,
};

using SettingField = std::variant<bool SettingsValues::*, int SettingsValues::*, double SettingsValues::*,
    QString SettingsValues::*, QColor SettingsValues::*, ShortcutPreset SettingsValues::*,
    AfterCapture SettingsValues::*, ArrowStyle SettingsValues::*, PaletteEdge SettingsValues::*>;

/// All there is to know of a setting. Its type is that of the field, its factory value that of the field in a
/// fresh `SettingsValues`.
struct SettingRow {
    Setting value;
    QStringView key;     ///< in the store
    QStringView fileKey; ///< in a settings file
    SettingField field;
    double least = 0; ///< what a number from a settings file is limited to
    double most = 0;
};

inline constexpr std::array<SettingRow, 15> settingTable{{
    {Setting::autoCopy, u"autoCopy", u"autoCopy", &SettingsValues::autoCopy},
    {Setting::autoSave, u"autoSave", u"autoSave", &SettingsValues::autoSave},
    {Setting::playSound, u"playSound", u"playSound", &SettingsValues::playSound},
    {Setting::afterCapture, u"afterCapture", u"afterCapture", &SettingsValues::afterCapture},
    {Setting::shortcutPreset, u"shortcutPreset", u"shortcutPreset", &SettingsValues::shortcutPreset},
    {Setting::saveFolder, u"saveFolder", u"saveFolder", &SettingsValues::saveFolder},
    {Setting::lastColor, u"lastColor", u"color", &SettingsValues::lastColor},
    {Setting::strokeWidth, u"strokeWidth", u"strokeWidth", &SettingsValues::strokeWidth, thinnestStroke,
        thickestStroke},
    {Setting::arrowStyle, u"arrowStyle", u"arrowStyle", &SettingsValues::arrowStyle},
    {Setting::handwritten, u"handwritten", u"handwritten", &SettingsValues::handwritten},
    {Setting::calloutText, u"calloutText", u"calloutText", &SettingsValues::calloutText},
    {Setting::paletteEdge, u"paletteEdge", u"paletteEdge", &SettingsValues::paletteEdge},
    {Setting::toolbarHidden, u"toolbarHidden", u"toolbarHidden", &SettingsValues::toolbarHidden},
    {Setting::beautifyByDefault, u"beautifyByDefault", u"beautifyByDefault",
        &SettingsValues::beautifyByDefault},
    {Setting::lastGradient, u"lastGradient", u"gradient", &SettingsValues::lastGradient, -1,
        Palette::gradientCount - 1},
}};

/// The person's preferences.
///
/// They are read once, when the object is made, and every change is written at once. Reading writes nothing
/// back; a value that is missing or of another type reads as the factory's. The very first time, the settings
/// of the sibling application Trazalio are copied, so that the two start alike.
///
/// For the main thread only.
class Settings : public QObject {
    Q_OBJECT

public:
    /// The instance on `UserDefaults::standard()`.
    static Settings& shared();

    /// The folder "Pintalux" among the person's pictures.
    static const QString& defaultFolder();

    explicit Settings(UserDefaults& defaults);
    ~Settings() override;

    const SettingsValues& values() const { return current; }

    /// While one lives, changes count and are announced at once but are written only when the last one goes:
    /// for a value that follows the hand.
    class Hold {
    public:
        explicit Hold(Settings& settings)
            : writes(settings.store)
        {
        }

    private:
        UserDefaults::Hold writes;
    };

    bool autoCopy() const { return current.autoCopy; }
    bool autoSave() const { return current.autoSave; }
    bool playSound() const { return current.playSound; }
    const QString& saveFolder() const { return current.saveFolder; }
    ShortcutPreset shortcutPreset() const { return current.shortcutPreset; }
    AfterCapture afterCapture() const { return current.afterCapture; }
    const QColor& lastColor() const { return current.lastColor; }
    double strokeWidth() const { return current.strokeWidth; }
    ArrowStyle arrowStyle() const { return current.arrowStyle; }
    bool handwritten() const { return current.handwritten; }
    bool calloutText() const { return current.calloutText; }
    PaletteEdge paletteEdge() const { return current.paletteEdge; }
    bool toolbarHidden() const { return current.toolbarHidden; }
    bool beautifyByDefault() const { return current.beautifyByDefault; }
    int lastGradient() const { return current.lastGradient; }

    void setAutoCopy(bool on) { set(Setting::autoCopy, on); }
    void setAutoSave(bool on) { set(Setting::autoSave, on); }
    void setPlaySound(bool on) { set(Setting::playSound, on); }
    /// An empty path means the default folder.
    void setSaveFolder(const QString& path)
    {
        set(Setting::saveFolder, path.isEmpty() ? defaultFolder() : path);
    }
    void setShortcutPreset(ShortcutPreset preset) { set(Setting::shortcutPreset, preset); }
    void setAfterCapture(AfterCapture action) { set(Setting::afterCapture, action); }
    /// The store keeps the colour without its opacity.
    void setLastColor(const QColor& color) { set(Setting::lastColor, color); }
    /// A width that is not a finite number is ignored.
    void setStrokeWidth(double width);
    void setArrowStyle(ArrowStyle style) { set(Setting::arrowStyle, style); }
    void setHandwritten(bool on) { set(Setting::handwritten, on); }
    void setCalloutText(bool on) { set(Setting::calloutText, on); }
    void setPaletteEdge(PaletteEdge edge) { set(Setting::paletteEdge, edge); }
    void setToolbarHidden(bool hidden) { set(Setting::toolbarHidden, hidden); }
    void setBeautifyByDefault(bool on) { set(Setting::beautifyByDefault, on); }
    void setLastGradient(int index) { set(Setting::lastGradient, index); }

    /// All settings as a settings file holds them; settings/SettingsFile.h.
    struct Snapshot;
    Snapshot snapshot() const;
    /// Takes every value over, stores them in one step and announces each. What names nothing becomes the
    /// factory's value and a number out of range the nearest one; the shortcuts stay when theirs names no
    /// preset, and are not announced when they stay. Never fails.
    void apply(const Snapshot& snapshot);

    /// Writes the settings to a file, with the folders above it that are missing. Throws `Error`.
    void write(const QString& path) const;
    /// Takes the settings of a file over. All or nothing: throws `Error`, and no setting has changed.
    void read(const QString& path);

    /// The person's restore point, beside the program's other data.
    static QString savedCopyPath();
    static bool hasSavedCopy();
    /// Throws like `write`.
    void saveCopy() const;
    /// Throws like `read`.
    void restoreSavedCopy();
    /// The values that the program ships with. The saved copy stays.
    void resetToFactory();

    /// Whether the program has been started before. Goes to the store each time and is not announced.
    bool hasLaunchedBefore() const;
    void setHasLaunchedBefore(bool launched);

Q_SIGNALS:
    /// The setting was set and stored; also when the value is the one that it had.
    void changed(pintalux::Setting setting);
    /// What was set lives in memory only: once for a disk that stays full.
    void writeFailed(const QString& reason);

private:
    template <typename T> void set(Setting setting, const T& value);
    void copySiblingSettings();

    UserDefaults& store;
    SettingsValues current;
};

} // namespace pintalux
