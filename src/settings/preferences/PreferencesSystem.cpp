// SPDX-License-Identifier: MIT
#include "controls/Menu.h"
#include "controls/PushButton.h"
#include "platform/graphics/Symbol.h"
#include "platform/session/LoginItem.h"
#include "settings/preferences/PreferencesRows.h"

#include <QBoxLayout>

#include <array>

using namespace Qt::StringLiterals;

namespace pintalux::Preferences {

namespace {

void addPermissionRow(Form::Group& group, Binding& binding)
{
    auto& row = group.addRow({});
    auto* symbol = new Form::SymbolView({}, &Theme::ok);
    row.setSymbol(symbol, 12);
    auto* grant = new PushButton(u"Conceder…"_s, PushButton::Kind::bordered);
    row.add(grant);
    binding.onRefresh([&row, symbol, grant, &binding] {
        const bool granted = ask(binding.host.hasPermission);
        if (granted)
            symbol->setSymbol(u"checkmark.seal.fill"_s, &Theme::ok);
        else
            symbol->setSymbol(u"exclamationmark.triangle.fill"_s, &Theme::warn);
        row.title().show(granted ? u"Permiso de Grabación de pantalla concedido"_s
                                 : u"Falta el permiso de Grabación de pantalla"_s);
        grant->setVisible(!granted);
    });
    QObject::connect(grant, &QAbstractButton::clicked, &binding, [&binding] {
        ask(binding.host.requestPermission);
        binding.refresh();
    });
}

void addLoginRow(Form::Group& group, Binding& binding)
{
    const auto name = u"Abrir al iniciar sesión"_s;
    auto& row = group.addRow(name);
    auto* toggle = new Switch(name);
    auto* failure = new Form::Label({}, Form::failure, Form::Label::Fit::wrapped);
    failure->hide();
    row.setSubtitle(failure);
    row.setSwitch(toggle);
    auto* item = binding.host.loginItem;
    row.setEnabled(item != nullptr);
    const auto showState = [toggle, item] { toggle->setChecked(item && item->isEnabled()); };
    binding.onRefresh(showState);
    QObject::connect(toggle, &QAbstractButton::clicked, toggle, [failure, item, showState](bool on) {
        QString problem;
        try {
            item->setEnabled(on);
        } catch (const Error& error) {
            problem = u"No se pudo cambiar: "_s + error.localizedDescription;
        }
        failure->show(problem);
        failure->setVisible(!problem.isEmpty());
        showState(); // the real one, whatever was asked for
    });
}

std::unique_ptr<Menu> makeMoreMenu(const PreferencesHost& host)
{
    struct Row {
        QStringView title;
        QStringView symbol;
        std::function<void()> run;
    };
    const std::array<Row, 3> rows{{
        {u"Exportar a un archivo…", u"square.and.arrow.up", host.exportSettings},
        {u"Importar desde un archivo…", u"square.and.arrow.down", host.importSettings},
        {u"Restablecer valores iniciales…", u"arrow.counterclockwise.circle", host.resetSettings},
    }};
    auto menu = std::make_unique<Menu>();
    for (const auto& row : rows) {
        auto* action = menu->addAction(row.title.toString());
        QObject::connect(action, &QAction::triggered, menu.get(), [run = row.run] { ask(run); });
        action->setData(row.symbol.toString());
    }
    // The icons take the colours of the theme that holds when the menu opens.
    QObject::connect(menu.get(), &QMenu::aboutToShow, menu.get(), [list = menu.get()] {
        const auto& theme = Theme::of(list->palette());
        for (auto* action : list->actions())
            action->setIcon(Symbol::icon(action->data().toString(), {theme.icon, theme.disabled, Qt::white}));
    });
    return menu;
}

} // namespace

QWidget* makeSystemGroup(Binding& binding)
{
    auto* group = new Form::Group;
    addPermissionRow(*group, binding);
    addLoginRow(*group, binding);
    return group;
}

QWidget* makeFileGroup(Binding& binding)
{
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(
        Form::groupPadding, Form::groupPadding, Form::groupPadding, Form::groupPadding);
    column->setSpacing(Form::groupPadding);
    column->addWidget(new Form::Label(
        u"Los cambios se aplican al momento. «Guardar» crea una copia de tu configuración a la que puedes "
        "volver cuando quieras; «Exportar» la lleva a un archivo para otro equipo."_s,
        Form::explanation, Form::Label::Fit::wrapped));

    auto* save = new PushButton(u"Guardar"_s, PushButton::Kind::solid);
    save->setSymbol(u"square.and.arrow.down"_s);
    auto* restore = new PushButton(u"Volver a la guardada"_s, PushButton::Kind::bordered);
    auto* more = new PushButton(u"Más"_s, PushButton::Kind::bordered);
    more->setMenu(makeMoreMenu(binding.host));
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addWidget(save);
    buttons->addWidget(restore);
    buttons->addStretch();
    buttons->addWidget(more);
    column->addLayout(buttons);

    QObject::connect(save, &QAbstractButton::clicked, &binding, [&binding] {
        ask(binding.host.saveCopy);
        binding.refresh();
    });
    QObject::connect(
        restore, &QAbstractButton::clicked, &binding, [&binding] { ask(binding.host.restoreSavedCopy); });
    binding.onRefresh([restore, &binding] { restore->setEnabled(ask(binding.host.hasSavedCopy)); });

    auto* group = new Form::Group;
    group->add(content);
    return group;
}

} // namespace pintalux::Preferences
