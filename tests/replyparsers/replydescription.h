// What the parsers make of a reply, as lines of text that a test can compare and a person can read.
#pragma once

#include "hua3replyparser.h"
#include "huaweireplyparser.h"

#include <QtCore/QStringList>

//! What a reply answers, and the state of the view model that reads it.
struct Question
{
    InterfaceNamingProfile naming = huaweiNaming();
    QString label; // untranslated
    QString askedPort;
    bool isLoggedIn = true;
    bool isAggregationSwitch = false;
};

//! "info <text>", "result every line" and so on.
QStringList describe(const reply::Effects &effects);
QStringList describe(const reply::PortInventory &inventory);
QStringList describe(const reply::TransceiverListing &listing);
QString describe(reply::LoginPrompt prompt);

//! Everything, in the order in which the view model applies it; each line begins with the number of its section.
QStringList describeReply(const QByteArray &bytes, Question question);
//! The same by the sections of the Hua3 family, which has its own numbers.
QStringList describeHua3Reply(const QByteArray &bytes, const Question &question);
