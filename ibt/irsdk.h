// Live-telemetry entry points of the iRacing SDK.
//
// They exist so that code written against the live interface links. There is no simulator to
// connect to on this platform: every function returns at once, ignores its arguments, touches
// nothing and returns the fixed result named below.
#pragma once

#include "ibt/ibtformat.h"

#if defined(__GNUC__)
#define IRSDK_EXPORT __attribute__((visibility("default")))
#else
#define IRSDK_EXPORT
#endif

/// Messages that a live client sends to the simulator.
enum irsdk_BroadcastMsg {
    irsdk_BroadcastCamSwitchPos = 0,
    irsdk_BroadcastCamSwitchNum,
    irsdk_BroadcastCamSetState,
    irsdk_BroadcastReplaySetPlaySpeed,
    irsdk_BroadcastReplaySetPlayPosition,
    irsdk_BroadcastReplaySearch,
    irsdk_BroadcastReplaySetState,
    irsdk_BroadcastReloadTextures,
    irsdk_BroadcastChatCommand,
    irsdk_BroadcastPitCommand,
    irsdk_BroadcastTelemCommand,
    irsdk_BroadcastFFBCommand,
    irsdk_BroadcastReplaySearchSessionTime,
    irsdk_BroadcastVideoCapture,
    irsdk_BroadcastLast ///< number of messages, not a message
};

/// false: there is no simulator to connect to.
IRSDK_EXPORT bool irsdk_startup();
IRSDK_EXPORT void irsdk_shutdown();

/// false; \a data stays as it is.
IRSDK_EXPORT bool irsdk_getNewData(char *data);
/// false at once, without waiting \a timeOut milliseconds; \a data stays as it is.
IRSDK_EXPORT bool irsdk_waitForDataReady(int timeOut, char *data);
/// false.
IRSDK_EXPORT bool irsdk_isConnected();

/// Null.
IRSDK_EXPORT const irsdk_header *irsdk_getHeader();
/// Null.
IRSDK_EXPORT const char *irsdk_getData(int index);
/// Null.
IRSDK_EXPORT const char *irsdk_getSessionInfoStr();
/// -1.
IRSDK_EXPORT int irsdk_getSessionInfoStrUpdate();

/// Null.
IRSDK_EXPORT const irsdk_varHeader *irsdk_getVarHeaderPtr();
/// Null.
IRSDK_EXPORT const irsdk_varHeader *irsdk_getVarHeaderEntry(int index);
/// -1 for every name.
IRSDK_EXPORT int irsdk_varNameToIndex(const char *name);
/// -1 for every name.
IRSDK_EXPORT int irsdk_varNameToOffset(const char *name);

/// All bits set: the message has no id.
IRSDK_EXPORT unsigned int irsdk_getBroadcastMsgID();
IRSDK_EXPORT void irsdk_broadcastMsg(irsdk_BroadcastMsg msg, int var1, int var2, int var3);
IRSDK_EXPORT void irsdk_broadcastMsg(irsdk_BroadcastMsg msg, int var1, float var2);
IRSDK_EXPORT void irsdk_broadcastMsg(irsdk_BroadcastMsg msg, int var1, int var2);

/// -1 for every number.
IRSDK_EXPORT int irsdk_padCarNum(int num, int zero);
