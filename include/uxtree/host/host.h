// The host types that every entry point works on.
#pragma once

#include "uxtree/host/application.h"
#include "uxtree/host/array.h"
#include "uxtree/host/contract.h"
#include "uxtree/host/node.h"
#include "uxtree/host/script_object.h"
#include "uxtree/host/services.h"
#include "uxtree/host/string.h"
#include "uxtree/host/utilities.h"
#include "uxtree/host/vector_desc.h"
