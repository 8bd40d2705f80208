#pragma once

#include "automation/module.h"

namespace morandel::automation {

// A factory whose instances create makes.
HRESULT create_class_factory(InstanceMaker create, IClassFactory** factory);

}  // namespace morandel::automation
