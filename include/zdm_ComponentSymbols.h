// zdm_ComponentSymbols.h: the component symbols, by their position in the component collection.
//
// The name of a symbol is its enumerator without the prefix: zdm_Component_C_1 stands for "C_1". A
// document made by this library has all 38 at these positions; the numbers are stored and never
// change.
#pragma once

enum zdm_ComponentSymbolsEnm : int {
    // Vectors and tensors, in the order of their names. The second symbol of an off-diagonal term,
    // such as C_12_21, stands for the two entries 12 and 21 of a symmetric tensor together.
    zdm_Component_C_1 = 0,
    zdm_Component_C_11 = 1,
    zdm_Component_C_1111 = 2,
    zdm_Component_C_1112 = 3,
    zdm_Component_C_1122 = 4,
    zdm_Component_C_12 = 5,
    zdm_Component_C_1211 = 6,
    zdm_Component_C_1212 = 7,
    zdm_Component_C_1222 = 8,
    zdm_Component_C_12_21 = 9,
    zdm_Component_C_13 = 10,
    zdm_Component_C_13_31 = 11,
    zdm_Component_C_2 = 12,
    zdm_Component_C_21 = 13,
    zdm_Component_C_22 = 14,
    zdm_Component_C_2211 = 15,
    zdm_Component_C_2212 = 16,
    zdm_Component_C_2222 = 17,
    zdm_Component_C_23 = 18,
    zdm_Component_C_23_32 = 19,
    zdm_Component_C_3 = 20,
    zdm_Component_C_31 = 21,
    zdm_Component_C_32 = 22,
    zdm_Component_C_33 = 23,
    // Principal values of the stress tensor.
    zdm_Component_C_P1 = 24,
    zdm_Component_C_P2 = 25,
    zdm_Component_C_P3 = 26,
    // An orthogonal tensor as a quaternion.
    zdm_Component_C_Q1 = 27,
    zdm_Component_C_Q2 = 28,
    zdm_Component_C_Q3 = 29,
    zdm_Component_C_Q4 = 30,
    // Rotations: the fourth to sixth component of what has six.
    zdm_Component_C_R1 = 31,
    zdm_Component_C_R2 = 32,
    zdm_Component_C_R3 = 33,
    zdm_Component_C_SCALAR = 34,
    // Principal values of any other tensor.
    zdm_Component_C_TP1 = 35,
    zdm_Component_C_TP2 = 36,
    zdm_Component_C_TP3 = 37,
    /// No component: the field as a whole. Not a symbol of the collection.
    zdm_Component_NONE = 38,
};
