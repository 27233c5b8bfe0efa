// All of the server kit.
#pragma once

#include "servers/kit/call_log.h"
#include "servers/kit/class_builder.h"
#include "servers/kit/class_factory.h"
#include "servers/kit/dispatch_object.h"
#include "servers/kit/errors.h"
#include "servers/kit/guid.h"
#include "servers/kit/live_objects.h"
