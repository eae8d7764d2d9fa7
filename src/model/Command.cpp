// SPDX-License-Identifier: MIT
#include "model/Command.h"

using namespace Qt::StringLiterals;

namespace pintalux {

QString help(Command command)
{
    const auto& row = enumRow(command);
    if (!row.help.isEmpty())
        return row.help.toString().arg(row.key);
    return row.key.isEmpty() ? row.title.toString() : u"%1 (%2)"_s.arg(row.title, row.key);
}

std::optional<ProgramAction> programActionNamed(QStringView name)
{
    if (const auto capture = fromRawValue<CaptureAction>(name))
        return capture;
    const auto command = fromRawValue<Command>(name);
    if (command && enumRow(*command).scope == CommandScope::program)
        return command;
    return std::nullopt;
}

QString nameOf(const ProgramAction& action)
{
    return std::visit([](auto what) { return rawValue(what); }, action);
}

} // namespace pintalux
