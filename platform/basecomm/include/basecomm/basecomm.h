#pragma once

#include <basecomm/basecomm_export.h>

#include <QtCore/QObject>

/// What every kind of link to a device has in common.
class BASECOMM_EXPORT BaseComm : public QObject
{
    Q_OBJECT

public:
    explicit BaseComm(QObject *parent = nullptr);
    ~BaseComm() override;

    /// Whether the link is open and usable at this moment. Any thread.
    virtual bool getIsConnected() const = 0;
};
