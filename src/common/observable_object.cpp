#include "common/observable_object.h"

#include "moc_observable_object.cpp"
