// The pure parse of console replies: hostile text of 1 MiB, and a listing of 52 ports. The yardstick is Qt's own
// decoding and splitting of the same bytes, taken within the same run; machines are noisy.
#include "hua3replyparser.h"
#include "huaweireplyparser.h"
#include "linepattern.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QStringList>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <optional>
#include <random>
#include <vector>

namespace {

constexpr int kMebibyte = 1 << 20;
constexpr int kLongestLine = static_cast<int>(reply::kLongestLine);

//! Satisfies every section that no label is needed for.
const char kEverything[] =
    "Interface PHY\r\nOptic Speed Port Interface\r\nnumber of VLANs\r\ndisplay port-mirroring\r\n"
    "display current-configuration\r\ndisplay poe power\r\ntransceiver information:\r\ndisplay this\r\n#\r\n"
    "igmp-snooping configuration\r\nInterface Link Duplex Type Speed Description PoE Priority InUsage\r\n"
    "Aggregate Interface\r\nPort Status Index Oper-Key Flag\r\nTotal VLANs\r\nIGMP snooping\r\nQuerier\r\n"
    "multicast forwarding-table\r\nMirroring group 1:\r\n";

struct Text
{
    const char *name;
    QByteArray bytes;
};

QByteArray repeated(const QByteArray &piece, int size = kMebibyte)
{
    return piece.repeated(size / piece.size() + 1);
}

QByteArray noise()
{
    std::mt19937 random(1);
    QByteArray bytes(kMebibyte, Qt::Uninitialized);
    for (char &byte : bytes)
        byte = static_cast<char>(random() % 256);
    return bytes;
}

std::vector<Text> hostileTexts()
{
    std::vector<Text> texts;
    const auto add = [&texts](const char *name, const QByteArray &bytes) {
        texts.push_back({name, kEverything + bytes});
    };
    add("noise", noise());
    add("line ends", repeated("\r\n"));
    add("one line", QByteArray(kMebibyte, 'x'));
    add("lines of one letter", repeated("A\r\n"));
    add("table headers", repeated("Interface Link Duplex Type\r\n"));
    add("page markers", repeated("---- More ----GE1/\r\n"));
    add("group details", repeated("Type:\r\n"));
    add("modules", repeated("GE0/0/1 transceiver information:\r\nWavelength\r\n"));
    add("gigabit ports", repeated("GE1/1/1\r\n"));
    add("long names", repeated("GigabitEthernet1/1/1\r\n"));
    add("mirrored ports", repeated("Observe-port 1 : GigabitEthernet0/0/1 Inbound\r\n"));
    add("interface sections", repeated("interface GigabitEthernet0/0/1\r\n"));
    add("names without numbers", repeated(repeated("GE1", kLongestLine - 6) + "\r\n"));
    add("blanks before a name", repeated(QByteArray(kLongestLine - 40, ' ') + "GigabitEthernet Inbound\r\n"));
    add("half rows", repeated(repeated("1 GigabitEthernet0/0/1 ", kLongestLine - 40) + "Inbound\r\n"));
    return texts;
}

QByteArray huaweiListing()
{
    QByteArray text = "display interface brief\r\nPHY: Physical\r\n"
                      "Interface                   PHY   Protocol InUti OutUti   inErrors  outErrors\r\n";
    for (int port = 1; port <= 48; ++port)
        text += "GigabitEthernet0/0/" + QByteArray::number(port)
                + "        up    up          0%     0%          0          0\r\n";
    for (int port = 1; port <= 4; ++port)
        text += "XGigabitEthernet0/0/" + QByteArray::number(port)
                + "        down  down        0%     0%          0          0\r\n";
    return text + "<Switch>";
}

QByteArray hua3Listing()
{
    QByteArray text = "display interface brief\r\n"
                      "Interface            Link Speed   Duplex Type PVID Description\r\n";
    for (int port = 1; port <= 52; ++port)
        text += (port <= 48 ? "GE1/0/" : "XGE1/0/") + QByteArray::number(port)
                + "            UP   1G(a)   F(a)   A    1\r\n";
    return text + "<Switch>";
}

//! Keeps the results from being optimised away.
using Amount = qsizetype;

Amount amountOf(const std::optional<reply::PortInventory> &inventory)
{
    return inventory ? inventory->downPorts.size() + inventory->upPorts.size() : 0;
}

Amount readShared(const reply::ReplyText &text, const InterfaceNamingProfile &naming)
{
    const auto mirrored = readPortMirroring(text, naming);
    return (mirrored ? static_cast<Amount>(mirrored->size()) : 0)
           + static_cast<Amount>(readTransceivers(text, naming).logged.size());
}

Amount readByHuawei(const QByteArray &bytes)
{
    const reply::ReplyText text(bytes);
    Amount amount = amountOf(readHuaweiPorts(text, huaweiNaming(), false)) + readShared(text, huaweiNaming());
    for (const auto section :
         {reply::readMulticastTable, reply::readMorePages, reply::readIpConflicts, reply::readOpticalPorts,
          reply::readVlanListing, reply::readPoePower, reply::readInterfaceView, reply::readIgmpConfiguration})
        amount += static_cast<Amount>(section(text).size());
    amount += readAutoNegotiation(text, huaweiNaming(), QStringLiteral("g0/0/1")) ? 1 : 0;
    return amount + static_cast<Amount>(readLoginPrompt(text, false));
}

Amount readByHua3(const QByteArray &bytes)
{
    const reply::ReplyText text(bytes);
    Amount amount = amountOf(readHua3Ports(text, hua3Naming(), false)) + readShared(text, hua3Naming());
    for (const auto section : {reply::readHua3MulticastTable, reply::readHua3IpConflicts, reply::readHua3PortStatus,
                               reply::readHua3VlanSummary, reply::readHua3Snooping, reply::readHua3Querier,
                               reply::readHua3LinkAggregation, reply::readHua3PoeInterfaces, reply::readHua3PoeUsage,
                               reply::readHua3ForwardingTable, reply::readHua3OpticalPorts})
        amount += static_cast<Amount>(section(text).size());
    const auto groups = readHua3MirroringGroups(text);
    return amount + (groups ? groups->size() : 0) + static_cast<Amount>(readHua3LoginPrompt(text, false));
}

Amount splitByQt(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes.constData(), bytes.size()).split(QStringLiteral("\r\n")).size(); // beyond a NUL too
}

using Reader = Amount (*)(const QByteArray &);

double seconds(Reader read, const QByteArray &bytes, int repetitions)
{
    QElapsedTimer timer;
    timer.start();
    Amount amount = 0;
    for (int i = 0; i < repetitions; ++i)
        amount += read(bytes);
    const double elapsed = double(timer.nsecsElapsed()) * 1e-9 / repetitions;
    if (amount == 0)
        std::fprintf(stderr, "nothing was read\n");
    return elapsed;
}

//! Best times of a reader and of the yardstick, taken alternately.
struct Times
{
    double reader = std::numeric_limits<double>::max();
    double yardstick = std::numeric_limits<double>::max();
};

Times measure(Reader read, const QByteArray &bytes, int rounds, int repetitions)
{
    Times best;
    for (int i = 0; i < rounds; ++i) {
        best.reader = std::min(best.reader, seconds(read, bytes, repetitions));
        best.yardstick = std::min(best.yardstick, seconds(splitByQt, bytes, repetitions));
    }
    return best;
}

void printRow(const QString &what, const QString &value, const char *must, const char *goal)
{
    std::printf("%-58s %-26s must %-9s goal %s\n", qPrintable(what), qPrintable(value), must, goal);
    std::fflush(stdout);
}

void benchHostileTexts(const char *family, Reader read, const std::vector<Text> &texts, int rounds)
{
    Times worst{0, 0};
    const char *name = "";
    for (const Text &text : texts) {
        const Times times = measure(read, text.bytes, rounds, 1);
        std::printf("    %-24s %6.1f ms, %5.1f x Qt's decoding and splitting\n", text.name, times.reader * 1e3,
                    times.reader / times.yardstick);
        if (times.reader > worst.reader) {
            worst = times;
            name = text.name;
        }
    }
    printRow(QStringLiteral("%1: 1 MiB of hostile text, worst: %2").arg(QLatin1String(family), QLatin1String(name)),
             QStringLiteral("%1 ms").arg(worst.reader * 1e3, 0, 'f', 1), "100 ms", "30 ms");
}

void benchListing(const char *family, Reader read, const QByteArray &listing, int rounds)
{
    constexpr int kRepetitions = 200;
    const Times times = measure(read, listing, rounds, kRepetitions);
    std::printf("%s: a listing of 52 ports%*s%.0f us, %.1f x Qt's decoding and splitting\n", family,
                static_cast<int>(36 - std::strlen(family)), "", times.reader * 1e6, times.reader / times.yardstick);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Measures the reply parsers on texts that it generates."));
    parser.addHelpOption();
    const QCommandLineOption roundsOption(QStringLiteral("rounds"), QStringLiteral("Rounds; the best one counts (5)."),
                                          QStringLiteral("N"), QStringLiteral("5"));
    parser.addOption(roundsOption);
    parser.process(application);
    const int rounds = std::max(1, parser.value(roundsOption).toInt());

    const std::vector<Text> texts = hostileTexts();
    benchHostileTexts("Huawei", readByHuawei, texts, rounds);
    benchHostileTexts("Hua3", readByHua3, texts, rounds);
    benchListing("Huawei", readByHuawei, huaweiListing(), rounds);
    benchListing("Hua3", readByHua3, hua3Listing(), rounds);
    return 0;
}
