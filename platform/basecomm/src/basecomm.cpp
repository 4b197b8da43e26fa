#include <basecomm/basecomm.h>

BaseComm::BaseComm(QObject *parent)
    : QObject(parent)
{}

BaseComm::~BaseComm() = default;
