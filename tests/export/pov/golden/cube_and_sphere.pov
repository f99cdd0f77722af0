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
#declare T0=texture{pigment{rgb .588}finish{diffuse .6}}
#end
// not lit
#declare T1=texture{pigment{rgb 0}finish{diffuse 0}}
#if(!(file_exists("a-t0.png")))#warning "Pictures are missing: start POV-Ray in the folder of this file.\n"#end
// 
mesh2{vertex_vectors{22,
<-1,-1,-1><1,-1,1><1,-1,-1><-1,-1,1><1,1,-1><-1,1,1><-1,1,-1><1,1,1>
<0,0,-1><.866025,0,-.5><.433013,.75,-.5><-.433013,.75,-.5><-.866025,0,-.5><-.433013,-.75,-.5><.433013,-.75,-.5><.433013,.75,.5>
<.866025,0,.5><-.433013,.75,.5><-.866025,0,.5><-.433013,-.75,.5><.433013,-.75,.5><0,0,1>}
normal_vectors{18,
<0,-1,0><0,1,0><1,0,0><-1,0,0><0,0,1><0,0,-1><.866,0,-.5><.433,.75,-.5>
<-.433,.75,-.5><-.866,0,-.5><-.433,-.75,-.5><.433,-.75,-.5><.433,.75,.5><.866,0,.5><-.433,.75,.5><-.866,0,.5>
<-.433,-.75,.5><.433,-.75,.5>}
uv_vectors{28,
<0,0><1,1><1,0><0,1><0,.33333><.16667,.33333><.16667,0><.33333,.33333>
<.33333,0><.5,.33333><.5,0><.66667,.33333><.66667,0><.83333,.33333><.83333,0><1,.33333>
<.16667,.66667><0,.66667><.33333,.66667><.5,.66667><.66667,.66667><.83333,.66667><1,.66667><.16667,1>
<.33333,1><.5,1><.66667,1><.83333,1>}
face_indices{36,
<0,1,2><0,3,1><4,5,6><4,7,5><2,7,4><2,1,7><6,3,0><6,5,3>
<3,7,1><3,5,7><6,2,4><6,0,2><8,9,10><8,10,11><8,11,12><8,12,13>
<8,13,14><8,14,9><9,15,10><9,16,15><10,17,11><10,15,17><11,18,12><11,17,18>
<12,19,13><12,18,19><13,20,14><13,19,20><14,16,9><14,20,16><16,21,15><15,21,17>
<17,21,18><18,21,19><19,21,20><20,21,16>}
normal_indices{36,
<0,0,0><0,0,0><1,1,1><1,1,1><2,2,2><2,2,2><3,3,3><3,3,3>
<4,4,4><4,4,4><5,5,5><5,5,5><5,6,7><5,7,8><5,8,9><5,9,10>
<5,10,11><5,11,6><6,12,7><6,13,12><7,14,8><7,12,14><8,15,9><8,14,15>
<9,16,10><9,15,16><10,17,11><10,16,17><11,13,6><11,17,13><13,4,12><12,4,14>
<14,4,15><15,4,16><16,4,17><17,4,13>}
uv_indices{36,
<0,1,2><0,3,1><0,1,2><0,3,1><0,1,2><0,3,1><0,1,2><0,3,1>
<0,1,2><0,3,1><0,1,2><0,3,1><0,4,5><6,5,7><8,7,9><10,9,11>
<12,11,13><14,13,15><4,16,5><4,17,16><5,18,7><5,16,18><7,19,9><7,18,19>
<9,20,11><9,19,20><11,21,13><11,20,21><13,22,15><13,21,22><17,23,16><16,24,18>
<18,25,19><19,26,20><20,27,21><21,1,22>}
texture{T0}
#if(HideBacks)interior_texture{T1}#end
no_shadow no_reflection}
