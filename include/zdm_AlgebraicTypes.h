// zdm_AlgebraicTypes.h: what a field is as a quantity: symbol field 0 of a field type's record.
#pragma once

/// The numbers are stored and never change; 5, 7, 8 and those above 9 are not in use.
enum zdm_AlgebraicTypeEnm : int {
    zdm_Algebraic_POSITION = 0,
    zdm_Algebraic_SCALAR = 1,
    zdm_Algebraic_TENSOR2_GENERAL = 2,
    zdm_Algebraic_TENSOR2_ORTHOGONAL = 3,
    zdm_Algebraic_TENSOR2_SYMMETRIC = 4,
    zdm_Algebraic_TENSOR4 = 6,
    zdm_Algebraic_VECTOR = 9,
};
