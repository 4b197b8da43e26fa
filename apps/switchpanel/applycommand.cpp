#include "applycommand.h"

#include "featureoptions.h"
#include "switchcommand.h"
#include "userio.h"

#include <algorithm>

namespace {

constexpr Text kNotTaken{"--%1 %2 is not taken", "--%1 %2 无效"};
constexpr Text kLowered{"--%1 ends at port %2, the last copper port of the switch",
                        "--%1 止于端口 %2，即交换机的最后一个电口"};

const SwitchCommand &applyCommand()
{
    static const SwitchCommand kCommand{
        "apply",
        {{"usage: switchpanel apply SETTINGS --port P [OPTIONS]", "用法：switchpanel apply 配置项 --port P [选项]"},
         {"Changes settings of a switch, several at once where wanted, and prints what it then tells about them.\n"
          "They leave in the order of the panel's queue, as --dry-run shows. 'switchpanel save' makes them last.",
          "修改交换机配置，可同时修改多项，并输出交换机随后的状态。\n"
          "发送顺序与面板队列一致，可用 --dry-run 查看。'switchpanel save' 使配置永久生效。"},
         kSwitchStatuses},
        [] {
            std::vector<Option> options = featureOptions();
            options.push_back(kDryRunJson);
            return options;
        }(),
        std::chrono::seconds(600),
        true};
    return kCommand;
}

QString onOff(bool isOn)
{
    return isOn ? QStringLiteral("enable") : QStringLiteral("disable");
}

QString linkType(bool isTrunk)
{
    return isTrunk ? QStringLiteral("trunk") : QStringLiteral("access");
}

QVariantList variants(const QStringList &texts)
{
    QVariantList list;
    for (const QString &text : texts)
        list.append(text);
    return list;
}

//! Writes a request into the view model's properties. What they refuse is remembered.
class FeatureSetter
{
public:
    FeatureSetter(SwitchDeviceViewModel &viewModel, Language language)
        : _viewModel(viewModel)
        , _language(language)
    {}

    QString set(const FeatureRequest &request);

private:
    void set(const VlanRequest &vlan);
    void setMulticast(const SnoopingRequest &multicast);
    void setQuerier(const SnoopingRequest &querier);
    void set(const GroupRequest &group);
    void set(const MirrorRequest &mirror);
    void set(const NegotiationRequest &negotiation);
    void set(const PoeRequest &poe);
    void set(const PortsRequest &ports);
    void check(const char *option, int asked, int taken);
    void checkUplinks(const char *option, const NumberRange &asked);

    SwitchDeviceViewModel &_viewModel;
    Language _language;
    QString _error;
};

void FeatureSetter::check(const char *option, int asked, int taken)
{
    if (asked != taken && _error.isEmpty())
        _error = inLanguage(kNotTaken, _language, {QLatin1String(option), QString::number(asked)});
}

// The view model moves a range into what the switch has; nobody means other ports than those that were named.
void FeatureSetter::checkUplinks(const char *option, const NumberRange &asked)
{
    check(option, asked.first, std::max(asked.first, _viewModel.upInterfaceMin()));
    check(option, asked.last, std::min(asked.last, _viewModel.upInterfaceMax()));
}

void FeatureSetter::set(const VlanRequest &vlan)
{
    _viewModel.setVlanEnable(true);
    _viewModel.setVlanId(vlan.id);
    check("vlan", vlan.id, _viewModel.vlanId());
    _viewModel.setInterfaceType(linkType(vlan.isTrunk));
    _viewModel.setVlanDownPortEnable(vlan.ports.has_value());
    _viewModel.setVlanUpPortEnable(vlan.uplinks.has_value());
    if (vlan.ports) {
        _viewModel.setDownPortMin(vlan.ports->first);
        _viewModel.setDownPortMax(vlan.ports->last);
    }
    if (vlan.uplinks) {
        _viewModel.setUpPortMin(vlan.uplinks->first);
        _viewModel.setUpPortMax(vlan.uplinks->last);
        checkUplinks("uplinks", *vlan.uplinks);
    }
}

void FeatureSetter::setMulticast(const SnoopingRequest &multicast)
{
    _viewModel.setMulticastEnable(true);
    _viewModel.setMulticastStatus(onOff(multicast.isOn));
    if (!multicast.vlan)
        return;
    _viewModel.setMulticastVlanId(*multicast.vlan);
    check("multicast-vlan", *multicast.vlan, _viewModel.multicastVlanId());
}

void FeatureSetter::setQuerier(const SnoopingRequest &querier)
{
    _viewModel.setQuerierEnable(true);
    _viewModel.setQuerierStatus(onOff(querier.isOn));
    if (!querier.vlan)
        return;
    _viewModel.setQuerierVlanId(*querier.vlan);
    check("querier-vlan", *querier.vlan, _viewModel.querierVlanId());
}

void FeatureSetter::set(const GroupRequest &group)
{
    _viewModel.setLinkAggregationEnable(true);
    _viewModel.setLinkId(group.id);
    _viewModel.setLinkInterfaceType(linkType(group.isTrunk));
    _viewModel.setLinkDownPortEnable(group.ports.has_value());
    _viewModel.setLinkUpPortEnable(group.uplinks.has_value());
    if (group.ports) {
        _viewModel.setLinkDownPortMin(group.ports->first);
        _viewModel.setLinkDownPortMax(group.ports->last);
    }
    if (group.uplinks) {
        _viewModel.setLinkUpPortMin(group.uplinks->first);
        _viewModel.setLinkUpPortMax(group.uplinks->last);
        checkUplinks("group-uplinks", *group.uplinks);
    }
}

void FeatureSetter::set(const MirrorRequest &mirror)
{
    _viewModel.setMirrorPortEnable(true);
    _viewModel.setMirrorStatus(onOff(mirror.isOn));
    _viewModel.setMirrorId(mirror.id);
    _viewModel.setMirrorSourcePort(mirror.from);
    _viewModel.setMirrorDstPort(mirror.to);
}

void FeatureSetter::set(const NegotiationRequest &negotiation)
{
    _viewModel.setAutoNegEnable(true);
    _viewModel.setAutoNegStatus(onOff(negotiation.isOn));
    _viewModel.setAutoNegPort(negotiation.port);
}

void FeatureSetter::set(const PoeRequest &poe)
{
    _viewModel.setPoeEnable(true);
    _viewModel.setPoeStatus(onOff(poe.isOn));
    _viewModel.setPoePort(poe.port);
    if (!poe.ports)
        return;
    _viewModel.setPoeDownPortMin(poe.ports->first);
    _viewModel.setPoeDownPortMax(poe.ports->last);
}

void FeatureSetter::set(const PortsRequest &ports)
{
    _viewModel.setInterfaceEnable(true);
    _viewModel.setInterfaceStatus(onOff(ports.isOn));
    _viewModel.setSelectedInterfacePorts(variants(ports.ports));
}

QString FeatureSetter::set(const FeatureRequest &request)
{
    if (request.vlan)
        set(*request.vlan);
    if (request.multicast)
        setMulticast(*request.multicast);
    if (request.querier)
        setQuerier(*request.querier);
    if (request.group)
        set(*request.group);
    if (request.mirror)
        set(*request.mirror);
    if (request.negotiation)
        set(*request.negotiation);
    if (request.poe)
        set(*request.poe);
    if (request.ports)
        set(*request.ports);
    return _error;
}

// What is sent ends at the last copper port, whatever was asked for.
void tellLowered(const char *option, const std::optional<NumberRange> &asked, int taken, Language language)
{
    if (asked && taken < asked->last)
        printError(inLanguage(kLowered, language, {QLatin1String(option), QString::number(taken)}));
}

} // namespace

ExitStatus runApply(const QStringList &words, Language language)
{
    const SwitchCommandLine line = readCommandLine(applyCommand(), words, language);
    if (line.end)
        return *line.end;
    const FeatureRequest request = takeFeatures(line.arguments, line.connection.language);
    if (!request.error.isEmpty())
        return refuseUsage(applyCommand(), request.error, line.connection.language);
    const SwitchAction apply = [&request, &line](SwitchDeviceViewModel &viewModel) {
        const Language told = line.connection.language;
        QString error = FeatureSetter(viewModel, told).set(request);
        if (!error.isEmpty())
            return error;
        viewModel.sendSwitchDeviceCmd();
        if (request.vlan)
            tellLowered("ports", request.vlan->ports, viewModel.downPortMax(), told);
        if (request.group)
            tellLowered("group-ports", request.group->ports, viewModel.linkDownPortMax(), told);
        return error;
    };
    if (line.arguments.has("dry-run"))
        return printDryRun(line, apply);
    return withSwitch(line.connection, [&apply](SwitchSession &session) -> Outcome {
        Outcome outcome = session.run(apply);
        if (!session.results().isEmpty())
            outcome.status = worse(outcome.status, printLines(session.results()));
        return outcome;
    });
}
