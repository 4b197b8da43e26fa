// What 'apply' is to set: one group of options for each feature of the panel.
#pragma once

#include "commandline.h"

#include <optional>

//! Port numbers from the first to the last one.
struct NumberRange
{
    int first = 0;
    int last = 0;
};

struct VlanRequest
{
    int id = 1;
    bool isTrunk = false;
    std::optional<NumberRange> ports;
    std::optional<NumberRange> uplinks;
};

//! Multicast and querier.
struct SnoopingRequest
{
    bool isOn = false;
    std::optional<int> vlan;
};

struct GroupRequest
{
    int id = 1;
    bool isTrunk = true;
    std::optional<NumberRange> ports;
    std::optional<NumberRange> uplinks;
};

struct MirrorRequest
{
    bool isOn = false;
    int id = 1;
    QString from;
    QString to;
};

struct NegotiationRequest
{
    bool isOn = false;
    QString port;
};

struct PoeRequest
{
    bool isOn = false;
    QString port; //!< or "all"
    std::optional<NumberRange> ports;
};

struct PortsRequest
{
    bool isOn = false;
    QStringList ports;
};

struct FeatureRequest
{
    std::optional<VlanRequest> vlan;
    std::optional<SnoopingRequest> multicast;
    std::optional<SnoopingRequest> querier;
    std::optional<GroupRequest> group;
    std::optional<MirrorRequest> mirror;
    std::optional<NegotiationRequest> negotiation;
    std::optional<PoeRequest> poe;
    std::optional<PortsRequest> ports;
    QString error; //!< a sentence for the user, empty when all is well
};

const std::vector<Option> &featureOptions();

//! Reads the features from a command line. None at all is an error, as is an option without the one that it belongs to.
//! Whether the switch and the panel take the values is for them to say.
FeatureRequest takeFeatures(const Arguments &arguments, Language language);
