#include "connectcommand.h"

#include "console.h"
#include "switchcommand.h"
#include "userio.h"

#include <QtCore/QJsonDocument>

namespace {

const SwitchCommand &connectCommand()
{
    static const SwitchCommand kCommand{
        "connect",
        {{"usage: switchpanel connect --port P [OPTIONS]", "用法：switchpanel connect --port P [选项]"},
         {"Logs in to the switch on a serial port and tells what it is: board type and ports.",
          "通过串口登录交换机，显示单板类型和端口。"},
         kSwitchStatuses},
        {{"json", nullptr, {"print a JSON document", "输出JSON文档"}}},
        std::chrono::seconds(60)};
    return kCommand;
}

} // namespace

ExitStatus runConnect(const QStringList &words, Language language)
{
    const SwitchCommandLine line = readCommandLine(connectCommand(), words, language);
    if (line.end)
        return *line.end;
    return withSwitch(line.connection, [&line](SwitchSession &session) -> Outcome {
        const Inventory inventory = session.inventory();
        const ExitStatus printed =
            line.arguments.has("json")
                ? printJson(QJsonDocument(inventoryJson(inventory)))
                : printLines(inventoryLines(inventory, session.language(), Painter(hasColours())));
        return {printed, {}};
    });
}
