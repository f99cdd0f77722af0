// Written by Orbivue. Start POV-Ray 3.7 or later in the folder of this file.
#version 3.7;
global_settings{assumed_gamma srgb max_trace_level 64}
#default{finish{ambient 0 emission 0}}
// One-sided surfaces that turn their back to this camera: 1 hides them, as the view does; 0 shows them,
// which is right for other cameras.
#declare HideBacks=1;
background{rgb<0,0,0>}
#declare Aspect=image_width/image_height;
#declare Center=<0,0.5,-1.5>;
#declare Narrow=0.41421356237309503*min(1,Aspect);
#declare Distance=2.345207929611206*sqrt(1+Narrow*Narrow)/Narrow;
#declare Eye=Center+<0.57735026,-0.57735026,0.57735026>*Distance;
#declare Ahead=vnormalize(Center-Eye);
#declare Right=vnormalize(vcross(Ahead,<0,0,1>));
camera{perspective location Eye direction Ahead*1.2071067811865475 up vcross(Right,Ahead) right Right*Aspect}
light_source{Eye rgb 1/.6}
// 
light_source{<1,2,-3> rgb<3.3333333,3.3333333,3.3333333>}
// 
#declare T0=texture{pigment{rgb 1}finish{diffuse .6}}
// 
mesh2{vertex_vectors{4,
<-1,-1,0><1,1,0><1,-1,0><-1,1,0>}
face_indices{2,
<0,1,2><0,3,1>}
texture{T0}no_shadow no_reflection}
