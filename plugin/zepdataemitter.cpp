#include "plugin/zepdataemitter.h"

ZepDataEmitter::ZepDataEmitter(QObject *parent) : QObject(parent) { }
