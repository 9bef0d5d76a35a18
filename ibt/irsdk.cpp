#include "ibt/irsdk.h"

bool irsdk_startup()
{
    return false;
}

void irsdk_shutdown() { }

bool irsdk_getNewData(char *)
{
    return false;
}

bool irsdk_waitForDataReady(int, char *)
{
    return false;
}

bool irsdk_isConnected()
{
    return false;
}

const irsdk_header *irsdk_getHeader()
{
    return nullptr;
}

const char *irsdk_getData(int)
{
    return nullptr;
}

const char *irsdk_getSessionInfoStr()
{
    return nullptr;
}

int irsdk_getSessionInfoStrUpdate()
{
    return -1;
}

const irsdk_varHeader *irsdk_getVarHeaderPtr()
{
    return nullptr;
}

const irsdk_varHeader *irsdk_getVarHeaderEntry(int)
{
    return nullptr;
}

int irsdk_varNameToIndex(const char *)
{
    return -1;
}

int irsdk_varNameToOffset(const char *)
{
    return -1;
}

unsigned int irsdk_getBroadcastMsgID()
{
    return ~0u;
}

void irsdk_broadcastMsg(irsdk_BroadcastMsg, int, int, int) { }

void irsdk_broadcastMsg(irsdk_BroadcastMsg, int, float) { }

void irsdk_broadcastMsg(irsdk_BroadcastMsg, int, int) { }

int irsdk_padCarNum(int, int)
{
    return -1;
}
