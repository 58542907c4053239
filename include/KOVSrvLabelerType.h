// KOVSrvLabelerType: whether labels are those of nodes or of elements, as the services' callers say
// it.
#pragma once

/// 0 stands for nodes, every other value for elements.
enum KOVSrvLabelerType : int { KOVSrvLabelerNodes = 0, KOVSrvLabelerElements = 1 };
