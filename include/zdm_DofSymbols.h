// zdm_DofSymbols.h: the degree-of-freedom symbols, by their position in the collection of them.
//
// The name of a symbol is its enumerator without the prefix: zdm_Dof_DISPLACEMENT_1 stands for
// "DISPLACEMENT_1". The numbers are stored and never change.
#pragma once

enum zdm_DofSymbolsEnm : int {
    zdm_Dof_ACOUSTIC_PRESSURE = 0,
    zdm_Dof_CONCENTRATION = 1,
    zdm_Dof_DISPLACEMENT_1 = 2,
    zdm_Dof_DISPLACEMENT_2 = 3,
    zdm_Dof_DISPLACEMENT_3 = 4,
    zdm_Dof_ELECTRIC_POTENTIAL = 5,
    zdm_Dof_FLUID_PRESSURE = 6,
    zdm_Dof_MAGNETIC_POTENTIAL = 7,
    zdm_Dof_PORE_PRESSURE = 8,
    zdm_Dof_ROTATION_ANGLE_1 = 9,
    zdm_Dof_ROTATION_ANGLE_2 = 10,
    zdm_Dof_ROTATION_ANGLE_3 = 11,
    zdm_Dof_TEMPERATURE = 12,
    zdm_Dof_WARPING = 13,
};
