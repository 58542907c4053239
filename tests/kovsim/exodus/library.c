/* Two blocks of hexahedra and one of quadrilaterals at three times, by the library of Exodus II. */
#include <exodusII.h>
#include <stdio.h>
#include <stdlib.h>

#define REQUIRE(call)                               \
    do {                                            \
        if ((call) < 0) {                           \
            fprintf(stderr, "failed: %s\n", #call); \
            exit(1);                                \
        }                                           \
    } while (0)

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    int words = 8, stored = 8;
    int const file = ex_create(argv[1], EX_CLOBBER, &words, &stored);
    REQUIRE(file);
    REQUIRE(ex_put_init(file, "three blocks", 3, 12, 4, 3, 0, 0));
    double x[12], y[12], z[12];
    int nodes[12], elements[4] = {400, 300, 200, 100};
    for (int i = 0; i < 12; ++i) {
        x[i] = i % 2;
        y[i] = i / 2 % 2;
        z[i] = i / 4;
        nodes[i] = 1000 - i;
    }
    REQUIRE(ex_put_coord(file, x, y, z));
    int const low[8] = {1, 2, 4, 3, 5, 6, 8, 7}, high[8] = {5, 6, 8, 7, 9, 10, 12, 11};
    int const sides[8] = {1, 2, 4, 3, 9, 10, 12, 11};
    REQUIRE(ex_put_elem_block(file, 7, "HEX8", 1, 8, 0));
    REQUIRE(ex_put_elem_block(file, 3, "QUAD4", 2, 4, 0));
    REQUIRE(ex_put_elem_block(file, 5, "HEX8", 1, 8, 0));
    REQUIRE(ex_put_elem_conn(file, 7, low));
    REQUIRE(ex_put_elem_conn(file, 3, sides));
    REQUIRE(ex_put_elem_conn(file, 5, high));
    REQUIRE(ex_put_node_num_map(file, nodes));
    REQUIRE(ex_put_elem_num_map(file, elements));

    char* global[] = {"KE"};
    char* nodal[] = {"disp_x", "disp_y", "disp_z", "temperature"};
    char* element[] = {"stress_xx_1", "stress_yy_1", "stress_xx_2", "stress_yy_2", "density"};
    int table[3][5] = {{1, 1, 1, 1, 1}, {0, 0, 0, 0, 1}, {1, 1, 1, 1, 0}};
    REQUIRE(ex_put_var_param(file, "g", 1));
    REQUIRE(ex_put_var_names(file, "g", 1, global));
    REQUIRE(ex_put_var_param(file, "n", 4));
    REQUIRE(ex_put_var_names(file, "n", 4, nodal));
    REQUIRE(ex_put_var_param(file, "e", 5));
    REQUIRE(ex_put_var_names(file, "e", 5, element));
    REQUIRE(ex_put_elem_var_tab(file, 3, 5, &table[0][0]));

    int const ids[3] = {7, 3, 5}, counts[3] = {1, 2, 1};
    for (int step = 1; step <= 3; ++step) {
        double const time = step / 3.0;
        REQUIRE(ex_put_time(file, step, &time));
        REQUIRE(ex_put_glob_vars(file, step, 1, &time));
        double values[12];
        for (int v = 1; v <= 4; ++v) {
            for (int i = 0; i < 12; ++i) values[i] = step * 100 + v * 20 + i / 7.0;
            REQUIRE(ex_put_nodal_var(file, step, v, 12, values));
        }
        for (int b = 0; b < 3; ++b) {
            for (int v = 1; v <= 5; ++v) {
                if (!table[b][v - 1]) continue;
                for (int i = 0; i < counts[b]; ++i) {
                    values[i] = step * 100 + v * 20 + ids[b] + i / 7.0;
                }
                REQUIRE(ex_put_elem_var(file, step, v, ids[b], counts[b], values));
            }
        }
    }
    REQUIRE(ex_close(file));
    return 0;
}
