// Written by Orbivue. Start POV-Ray 3.7 or later in the folder of this file.
#version 3.7;
global_settings{assumed_gamma srgb max_trace_level 64
radiosity{pretrace_start .08 pretrace_end .02 count 60 nearest_count 8 error_bound .6 recursion_limit 2
low_error_factor .7 gray_threshold 0 minimum_reuse .02 brightness 1 adc_bailout .01}}
#default{finish{ambient 0 emission 0}}
background{rgb<0,0.5,0>}
#declare Aspect=image_width/image_height;
#declare Center=<0,0,0>;
#declare Narrow=0.41421356237309503*min(1,Aspect);
#declare Distance=1.7320507764816284*sqrt(1+Narrow*Narrow)/Narrow;
#declare Eye=Center+<0.57735026,-0.57735026,0.57735026>*Distance;
#declare Ahead=vnormalize(Center-Eye);
#declare Right=vnormalize(vcross(Ahead,<0,0,1>));
camera{perspective location Eye direction Ahead*1.2071067811865475 up vcross(Right,Ahead) right Right*Aspect}
light_source{Eye rgb 1/.6}
// 
#declare T0=texture{pigment{rgb<.5,.25,1>}finish{diffuse .25}}
// 
#declare T1=texture{pigment{rgb<1,1,0>}finish{diffuse 1 emission 1}}
// 
mesh2{vertex_vectors{6,
<0,0,-1><1,0,0><0,1,0><-1,0,0><0,-1,0><0,0,1>}
face_indices{8,
<0,1,2><0,2,3><0,3,4><0,4,1><1,5,2><2,5,3><3,5,4><4,5,1>}
texture{T0}}
// 
mesh2{vertex_vectors{4,
<-1,-1,0><1,1,0><1,-1,0><-1,1,0>}
face_indices{2,
<0,1,2><0,3,1>}
texture{T1}}
