// A bearing bracket with a pressed-in bush: the part of the demonstration. Lengths in millimetres.
//
//   gmsh bearing_bracket.geo -3 -setnumber size 8 -o bracket.msh
//
// `size` is the edge length of the elements; see scripts/demo.sh for the sizes of the demonstration.
// The foot carries four bolt holes with counterbores; the upright holds the bearing eye, two ribs
// stiffen it; the foot's corners and the rim of the eye are rounded as a casting's would be.
SetFactory("OpenCASCADE");

DefineConstant[ size = {8, Name "Edge length of the elements"} ];

length = 160; width = 96; foot = 16;       // the foot
wall = 26; height = 92;                    // the upright, and the height of the eye above ground
eye_radius = 36; bore_radius = 22; bush = 4;
hole_radius = 6.5; sink_radius = 11; sink_depth = 5;
hole_x = 63; hole_y = 32;
eps = 1e-3;

// ---- foot, its upright corners rounded ----
Box(1) = {-length/2, -width/2, 0, length, width, foot};
corners() = {};
For sx In {-1:1:2}
  For sy In {-1:1:2}
    corners() += Curve In BoundingBox{sx*length/2-eps, sy*width/2-eps, -eps,
                                      sx*length/2+eps, sy*width/2+eps, foot+eps};
  EndFor
EndFor
Fillet{1}{corners()}{14}

// ---- upright, and the eye with a rounded rim ----
Box(2) = {-eye_radius, -wall/2, foot/2, 2*eye_radius, wall, height-foot/2};
Cylinder(3) = {0, -wall/2-5, height, 0, wall+10, 0, eye_radius};
rims() = {};
For sy In {-1:1:2}
  rims() += Curve In BoundingBox{-eye_radius-eps, sy*(wall/2+5)-eps, height-eye_radius-eps,
                                  eye_radius+eps, sy*(wall/2+5)+eps, height+eye_radius+eps};
EndFor
Fillet{3}{rims()}{3}

// ---- ribs: triangles, front and back ----
rib = 10;
For sy In {-1:1:2}
  p = newp;
  Point(p)   = {-rib/2, sy*(wall/2-1), foot-1};
  Point(p+1) = {-rib/2, sy*(width/2-4), foot-1};
  Point(p+2) = {-rib/2, sy*(width/2-4), foot+4};
  Point(p+3) = {-rib/2, sy*(wall/2-1), height-eye_radius-6};
  l = newl;
  Line(l) = {p, p+1}; Line(l+1) = {p+1, p+2}; Line(l+2) = {p+2, p+3}; Line(l+3) = {p+3, p};
  c = newll; Curve Loop(c) = {l, l+1, l+2, l+3};
  s = news; Plane Surface(s) = {c};
  ribs() += Extrude{rib, 0, 0}{ Surface{s}; };
EndFor
body() = BooleanUnion{ Volume{1}; Delete; }{ Volume{2, 3, ribs(1), ribs(7)}; Delete; };

// ---- bolt holes with counterbores, and the bore ----
n = newv;
cuts() = {};
For sx In {-1:1:2}
  For sy In {-1:1:2}
    Cylinder(n) = {sx*hole_x, sy*hole_y, -1, 0, 0, foot+2, hole_radius};
    Cylinder(n+1) = {sx*hole_x, sy*hole_y, foot-sink_depth, 0, 0, sink_depth+1, sink_radius};
    cuts() += {n, n+1};
    n += 2;
  EndFor
EndFor
Cylinder(n) = {0, -wall, height, 0, 2*wall, 0, bore_radius};
cuts() += n;
body() = BooleanDifference{ Volume{body()}; Delete; }{ Volume{cuts()}; Delete; };

// ---- the bush, sharing the bore's surface with the body ----
n = newv;
Cylinder(n) = {0, -wall/2-5, height, 0, wall+10, 0, bore_radius};
Cylinder(n+1) = {0, -wall/2-5, height, 0, wall+10, 0, bore_radius-bush};
ring() = BooleanDifference{ Volume{n}; Delete; }{ Volume{n+1}; Delete; };
BooleanFragments{ Volume{body()}; Delete; }{ Volume{ring()}; Delete; }

// ---- groups: what a deck names ----
inside() = Volume In BoundingBox{-bore_radius-1, -wall, height-bore_radius-1,
                                  bore_radius+1, wall, height+bore_radius+1};
all() = Volume{:};
all() -= inside();
Physical Volume("BRACKET") = all();
Physical Volume("BUSH") = inside();

Physical Surface("GROUND") = Surface In BoundingBox{-length, -width, -eps, length, width, eps};
Physical Surface("BEARING") = Surface In BoundingBox{
  -bore_radius+bush-1, -wall, height-bore_radius+bush-1, bore_radius-bush+1, wall, height+bore_radius-bush+1};
holes() = {};
For sx In {-1:1:2}
  For sy In {-1:1:2}
    holes() += Surface In BoundingBox{sx*hole_x-hole_radius-eps, sy*hole_y-hole_radius-eps, -eps,
                                      sx*hole_x+hole_radius+eps, sy*hole_y+hole_radius+eps, foot+eps};
  EndFor
EndFor
Physical Surface("BOLT_HOLES") = holes();

// ---- the mesh: second order, finer where radii are small ----
Mesh.MeshSizeMin = 0.35*size;
Mesh.MeshSizeMax = size;
Mesh.MeshSizeFromCurvature = 14;
Mesh.ElementOrder = 2;
// Mid-side nodes stay on straight edges: curved, some elements at the eye and the counterbores turn
// over, and the optimizer that would mend them finds its way in nine runs out of ten.
Mesh.SecondOrderLinear = 1;

Mesh.Optimize = 1;
Mesh.SaveGroupsOfNodes = 1;
Mesh.SaveGroupsOfElements = 1;
