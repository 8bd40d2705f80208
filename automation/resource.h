// Numbers of the module's resources.

#pragma once

#define IDS_PROJNAME 100
#define IDR_COMEXPRESS 102
