// Written by Orbivue. Start POV-Ray 3.7 or later in the folder of this file.
#version 3.7;
global_settings{assumed_gamma srgb max_trace_level 64}
#default{finish{ambient 0 emission 0}}
// One-sided surfaces that turn their back to this camera: 1 hides them, as the view does; 0 shows them,
// which is right for other cameras.
#declare HideBacks=1;
background{rgb<0,0,0>}
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
#if(file_exists("a-t0.png"))
#declare T0=texture{pigment{uv_mapping image_map{png "a-t0.png" interpolate 2}}finish{diffuse .6}}
#else
#declare T0=texture{pigment{rgb<.5,.25,1>}finish{diffuse .6}}
#end
// not lit
#declare T1=texture{pigment{rgb 0}finish{diffuse 0}}
// 
#declare T2=texture{pigment{rgb<1,1,0>}finish{diffuse .1 emission 1}}
// 
#declare T3=texture{pigment{rgb<1,1,0>}finish{diffuse 0 emission 1}}
#if(!(file_exists("a-t0.png")))#warning "Pictures are missing: start POV-Ray in the folder of this file.\n"#end
// 
mesh2{vertex_vectors{6,
<0,0,-1><1,0,0><0,1,0><-1,0,0><0,-1,0><0,0,1>}
normal_vectors{6,
<0,0,-1><1,0,0><0,1,0><-1,0,0><0,-1,0><0,0,1>}
uv_vectors{13,
<0,0><0,.5><.25,.5><.25,0><.5,.5><.5,0><.75,.5><.75,0>
<1,.5><.25,1><.5,1><.75,1><1,1>}
face_indices{8,
<0,1,2><0,2,3><0,3,4><0,4,1><1,5,2><2,5,3><3,5,4><4,5,1>}
uv_indices{8,
<0,1,2><3,2,4><5,4,6><7,6,8><1,9,2><2,10,4><4,11,6><6,12,8>}
texture{T0}
#if(HideBacks)interior_texture{T1}#end
no_shadow no_reflection}
// 
mesh2{vertex_vectors{4,
<-1,-1,0><1,1,0><1,-1,0><-1,1,0>}
face_indices{2,
<0,1,2><0,3,1>}
texture{T2}no_shadow no_reflection}
