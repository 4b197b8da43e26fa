// What is seen of a running analysis.
#pragma once

#include "language.h"

#include <QtCore/QElapsedTimer>

/*!
    Progress on standard error: one line that is drawn again on a terminal and wiped at the end, a plain line now and
   then and one at the end elsewhere. No share of the file is shown: nothing says how many packets are still to come.
*/
class ProgressDisplay
{
public:
    ProgressDisplay(QString name, Language language, bool isShown);
    ~ProgressDisplay();
    ProgressDisplay(const ProgressDisplay &) = delete;
    ProgressDisplay &operator=(const ProgressDisplay &) = delete;

    void update(int packets);
    //! Shows the final figures; called again it does nothing.
    void finish();

private:
    QString text() const;
    void drawLine(const QString &text);

    QString _name;
    Language _language;
    bool _isShown;
    bool _isTerminal;
    int _packets = 0;
    bool _isDrawn = false;
    QElapsedTimer _sinceStart;
    QElapsedTimer _sinceLine;
};

//! "name: 12000 packets read, 480000 packets/s".
QString progressText(const QString &name, int packets, qint64 elapsedMsecs, Language language);
